#pragma once

#include <cstdint>

#include "data/text_list.h"

// The raw text of a data source, rows x cols texts, row-major. Row 0 is the header, column 0 holds the
// sample labels. The first text can be replaced.
struct CellTable {
    std::int32_t rows = 0;
    std::int32_t cols = 0;
    TextList texts;          // rows x cols, or those of the header, then the labels
    bool isReduced = false;  // to these; the other cells are empty then
    bool isOfEngine = false; // names of an engine, which may have changed their case

    const char* cell(std::int32_t row, std::int32_t col) const {
        if (!isReduced) return texts[Index{row} * cols + col];
        return row == 0 ? texts[col] : col == 0 ? texts[cols + row - 1] : "";
    }
};

// Gives the memory of all cells but the header and the labels back; success or outOfMemory (nothing is
// changed then).
[[nodiscard]] ErrorCode reduceToLabels(CellTable& table);
