#pragma once

#include <string_view>

#include "data/moments/moment_table.h"
#include "numeric/growing_list.h"

// A small text as lines of comma-separated cells without any limit of length: quotes hold commas, and two of
// them stand for one. Blanks around cells are cut, empty lines and comments passed over. Cells are ended in
// the bytes that they stand in.
class DelimitedCells {
public:
    // Divides the bytes, behind which there is room for one more. Returns success, outOfMemory, or
    // illegalData with the refusal.
    [[nodiscard]] ErrorCode divide(char* bytes, Index length, MomentsRefusal& refusal);

    Index rows() const { return rows_.size(); }
    Index cells(Index row) const { return rows_[row].count; }
    const char* cell(Index row, Index cell) const { return cells_[rows_[row].first + cell]; }
    long long line(Index row) const { return rows_[row].line; }

private:
    struct Row {
        Index first;
        Index count;
        long long line; // of the text, from 1
    };

    GrowingList<const char*> cells_;
    GrowingList<Row> rows_;
};
