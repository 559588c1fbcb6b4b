#pragma once

#include <string_view>

#include "data/import/import_options.h"
#include "data/text_slot.h"

// How texts are written.
struct TextTarget {
    WrittenText written = WrittenText::utf8;
    CodePageWriter codePage = nullptr; // null: Windows-1252
};

// A text as a cell of the program's form.
struct TableText {
    char text[textSlotSize];
    Index length;
    bool isCut;
    bool lacks; // a character that the encoding has not; "?" stands for it

    std::string_view view() const { return {text, static_cast<std::size_t>(length)}; }
};

// Writes a text without commas, quotes and controls, a blank where two words would grow together, and at most
// `limit` bytes of whole characters.
void cleanText(std::string_view utf8, const TextTarget& target, Index limit, TableText& cell);

// The label of a sample: besides, it does not begin like a comment; a text that is too long ends in "~" and
// the number of the sample, and one of which nothing is left is that number.
void cleanLabel(std::string_view utf8, const TextTarget& target, Index sample, TableText& cell);

// A text in double quotes, those in it doubled and controls as blanks: at most 4 bytes for each of the text
// and 2 more. Returns the count.
Index quoteText(std::string_view utf8, const TextTarget& target, char* bytes);
