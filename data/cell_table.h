#pragma once

#include <cstdint>

#include "data/text_slot.h"
#include "numeric/block.h"

// The raw text of a data source, rows x cols slots, row-major. Row 0 is the header, column 0 holds the
// sample labels.
struct CellTable {
    std::int32_t rows = 0;
    std::int32_t cols = 0;
    Block<TextSlot> cells;

    const char* cell(std::int32_t row, std::int32_t col) const { return cells[Index{row} * cols + col].text; }
};
