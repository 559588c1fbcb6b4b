#pragma once

#include "data/data_set.h"
#include "numeric/kendall_variance.h"
#include "numeric/matrix.h"

// One column of a data matrix, ranked. Ranks count from 1; a run of equal values has the mean of its
// positions. The arrays have an item for each sample and belong to RankedColumns.
struct RankedColumn {
    double* ranks;
    std::int32_t* runs;   // number of the sample's run of equal values, ascending from 0
    std::int32_t* sorted; // the samples in ascending order
    std::int32_t runCount;
    double tieSum;    // sum of t^3 - t over the runs of t equal values
    double tiedPairs; // sum of t (t - 1) / 2
    TieSums ties;     // of the runs
    double leastGap;  // between neighbouring values that differ
    double range;     // of the values
};

// Every column of a data matrix, each sorted once however many pairs it stands in.
struct RankedColumns {
    Block<RankedColumn> columns;
    // A row for each variable, an item for each sample.
    Matrix ranks;
    Block<std::int32_t> runs;
    Block<std::int32_t> sorted;

    // Success, or outOfMemory.
    [[nodiscard]] ErrorCode rank(const DataMatrix& data);
};
