#pragma once

#include "data/import/import_survey.h"
#include "data/import/table_text.h"
#include "data/text_list.h"

enum class ColumnUse : std::uint8_t { leftOut, labels, number, category };

// What is done with a file.
struct ImportPlan {
    NumberForm numbers;
    Block<ColumnUse> uses;  // of every column
    Index labelColumn = -1; // -1: samples are numbered
    Index variables = 0;
    TextList names; // of the variables, as they are written
    TextTarget target;
};

// Lines of the program's form hold so many characters at most, without their newline.
constexpr Index longestTableLine = 4094;
