#pragma once

#include <cstddef>

// The decimal number that a text begins with: leading blanks, sign, digits, decimal point and exponent; the
// first other character ends it, and a text that begins otherwise gives 0. Words (inf, nan) and hexadecimal
// digits are no numbers; the decimal point is "." whatever the locale. Beyond the range of a double: an
// infinity or 0. `end`, when given, receives the first character that is not of the number.
double parseNumber(const char* text, const char** end = nullptr);

// True when the whole text, blanks around it aside, is one such number.
bool isNumber(const char* text);

// The same, with what the text begins with in `value`.
inline bool readNumber(const char* text, double& value) {
    const char* end = nullptr;
    value = parseNumber(text, &end);
    return *end == '\0' ? end != text : isNumber(text);
}

// The same of a text behind whose end so many bytes can be read, whatever they are: digits are then taken
// several at a time.
constexpr std::ptrdiff_t bytesBehindNumber = 7;
bool readCellNumber(const char* text, double& value);
