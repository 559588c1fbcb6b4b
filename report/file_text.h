#pragma once

#include "data/import/unicode.h"
#include "report/text_buffer.h"

// Names and labels are bytes of a file in no known encoding. Documents in UTF-8 take what is UTF-8 as it is,
// and any other byte as a character of Windows-1252.

// Takes the first character off a text that is not empty.
char32_t takeFileCharacter(std::string_view& text);

// The length of the longest beginning of `text` that has at most `most` bytes and cuts no character.
std::size_t wholeCharacters(std::string_view text, std::size_t most);

// C0, DEL and C1.
bool isControl(char32_t character);

// What stands for a character in documents without controls: a blank for a tab or a line end, the replacement
// character for any other.
char32_t withoutControls(char32_t character);

void appendCharacter(TextBuffer& document, char32_t character);
