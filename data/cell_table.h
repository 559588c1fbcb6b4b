#pragma once

#include <cstdint>

#include "data/text_list.h"

// The raw text of a data source, rows x cols texts, row-major. Row 0 is the header, column 0 holds the
// sample labels. The first text can be replaced.
struct CellTable {
    std::int32_t rows = 0;
    std::int32_t cols = 0;
    TextList texts;

    const char* cell(std::int32_t row, std::int32_t col) const { return texts[Index{row} * cols + col]; }
};
