#pragma once

#include <string_view>

#include "numeric/block.h"

// Code points in UTF-8 and in Windows-1252.

constexpr char32_t replacementCharacter = 0xFFFD;

// How many bytes at the beginning of `text` are whole characters of UTF-8 and no NUL.
Index validUtf8(const char* text, Index length);

// The whole characters of valid UTF-8 that stand in its first `most` bytes.
std::string_view firstCharacters(std::string_view text, std::size_t most);

// Whether `text`, at most 3 bytes, can be the beginning of a longer character.
bool isUtf8Beginning(const char* text, Index length);

// The next character of valid UTF-8, which is taken off `text`.
char32_t takeCharacter(std::string_view& text);

// Writes a character in UTF-8, at most 4 bytes; the count.
Index putCharacter(char32_t character, char* bytes);

char32_t fromWindows1252(unsigned char byte);
// False when Windows-1252 lacks the character.
bool toWindows1252(char32_t character, char& byte);
