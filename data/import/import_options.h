#pragma once

#include "numeric/block.h"

// What a user says about a table that another program saved. What is left `found` is found out from the file
// and told.

enum class TextEncoding { found, utf8, utf16, windows1252 };
enum class Delimiter { found, comma, semicolon, tab, bar, blank };
enum class DecimalSign { found, point, comma };
enum class ThousandsMark { found, none, comma, point, space };
enum class HeaderRow { found, present, absent };
enum class LabelColumn { found, first, none, named };
// What is done to rows that have another number of cells than the table: the import ends, or they are left
// out, or cells that lack at the end are missing. Rows of units or second names are left out with them.
enum class OddRows { refused, leftOut, filled };

// The encoding that the table is written in; `ansi` is that of the system.
enum class WrittenText { utf8, ansi };

// Writes a UTF-8 text in the system's code page; false where that lacks a character.
using CodePageWriter = bool (*)(const char* text, char* converted, int size);

struct ImportOptions {
    TextEncoding encoding = TextEncoding::found;
    Delimiter delimiter = Delimiter::found;
    DecimalSign decimal = DecimalSign::found;
    ThousandsMark thousands = ThousandsMark::found;
    HeaderRow header = HeaderRow::found;
    LabelColumn labels = LabelColumn::found;
    const char* labelName = nullptr; // of LabelColumn::named
    OddRows oddRows = OddRows::refused;
    WrittenText written = WrittenText::utf8;
    CodePageWriter codePage = nullptr; // null: Windows-1252

    // Comma-separated lists, in the order given: texts that mean a missing cell ("none" empties what is there
    // so far), and columns by name or by number as #3 or #3-#7, to keep, to leave out, and to take as
    // categories even where they hold numbers.
    Block<const char*> missing;
    Block<const char*> keeps;
    Block<const char*> drops;
    Block<const char*> categories;
};
