#pragma once

#include <string_view>

#include "data/import/import_options.h"

// What a user can say of an import. The first ones are words of a list, the others texts.
enum class ImportChoice {
    encoding,
    delimiter,
    decimal,
    thousands,
    header,
    labels,
    oddRows,
    missing,
    keeps,
    drops,
    categories,
};
constexpr int wordChoiceCount = static_cast<int>(ImportChoice::oddRows) + 1;
constexpr int importChoiceCount = static_cast<int>(ImportChoice::categories) + 1;

struct ImportChoiceNames {
    const char* option; // on the command line
    const char* label;  // in the dialog
    const char*
        words; // of a list (data/word_list.h), in the order of its values; the first is that behind `found`
};
const ImportChoiceNames& namesOf(ImportChoice choice);

// What is said of a list: the number of a word, 0 where it is left to be found. Rows of another length are
// never found.
int chosenWord(const ImportOptions& options, ImportChoice choice);
void chooseWord(ImportOptions& options, ImportChoice choice, int number);

// Takes the labels from a column, from 0, whatever its name; `name` stays the caller's.
void chooseLabelColumn(ImportOptions& options, Index column, char (&name)[24]);

// What is said by a text, which stays the caller's; nothing by an empty one. Success or outOfMemory.
[[nodiscard]] ErrorCode chooseText(ImportOptions& options, ImportChoice choice, const char* text);
