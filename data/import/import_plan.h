#pragma once

#include "data/csv_reader.h"
#include "data/import/import_survey.h"
#include "data/import/table_text.h"
#include "data/text_list.h"

enum class ColumnUse : std::uint8_t { leftOut, labels, number, category };

constexpr bool isVariable(ColumnUse use) {
    return use == ColumnUse::number || use == ColumnUse::category;
}

constexpr Index undecidedColumn = -2;

// What is done with a file.
struct ImportPlan {
    NumberForm numbers = {DecimalSign::found}; // until it is decided
    Block<ColumnUse> uses;                     // of every column
    Index labelColumn = undecidedColumn;       // -1: samples are numbered
    Index variables = 0;
    TextList names; // of the variables, as they are written
    TextTarget target;
};

// Of the program's form, without its newline.
constexpr Index longestTableLine = longestCsvLine;
