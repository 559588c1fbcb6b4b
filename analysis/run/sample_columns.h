#pragma once

#include "data/text_list.h"
#include "numeric/matrix.h"

// What an analysis has found out about each sample, as named columns that can stand beside the data. Rows are
// the working samples in their order. Analyses that tell the same use the same name: "prediction",
// "residual", "s.residual", "infimum", "supremum"; "score 1", ...; "coordinate 1", ...
struct SampleColumns {
    bool areWanted = false; // by who starts the runs; else no analysis spends time or memory on them
    Index count = 0;        // columns that are there
    TextList names;         // without commas
    Matrix values;          // samples x columns

    // Room for so many columns; none is there yet. Success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index samples, Index columns);
    // Leaves nothing but the wish.
    void release();

    // Appends a column with value(s) for sample s.
    template <class Value> void add(const char* name, Value value) {
        for (Index s = 0; s < values.rows(); ++s) values(s, count) = value(s);
        names.set(count++, name);
    }
    // Appends the first columns of a matrix that has a row for each sample, as "PREFIX1", "PREFIX2", ...
    void addNumbered(const char* prefix, const Matrix& matrix, Index columns);
};

// What a driver does once its report is written: keeps so many columns, which add(columns) appends, if they
// are wanted. Returns success or outOfMemory.
template <class Add>
[[nodiscard]] ErrorCode keepColumns(SampleColumns& columns, Index samples, Index count, Add add) {
    if (!columns.areWanted) return success;
    const ErrorCode code = columns.allocate(samples, count);
    if (code == success) add(columns);
    return code;
}

// The same for columns that are those of a matrix.
[[nodiscard]] ErrorCode keepNumbered(SampleColumns& columns, const char* prefix, const Matrix& matrix,
                                     Index count);
