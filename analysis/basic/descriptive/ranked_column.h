#pragma once

#include "data/data_set.h"
#include "numeric/kendall_variance.h"
#include "numeric/sort.h"

// One column of a data matrix, ranked. Ranks count from 1; a run of equal values has the mean of its
// positions. The arrays have an item for each sample and belong to RankedColumns.
struct RankedColumn {
    std::uint32_t* doubledRanks; // whole numbers in half the memory of ranks
    std::uint32_t* runs;         // number of the sample's run of equal values, ascending from 0
    std::uint32_t* sorted;       // the samples in ascending order
    std::uint32_t runCount;
    double tieSum;    // sum of t^3 - t over the runs of t equal values
    double tiedPairs; // sum of t (t - 1) / 2
    TieSums ties;     // of the runs
    double leastGap;  // between neighbouring values that differ
    double range;     // of the values
};

// The columns of a data matrix, each sorted once however many pairs it stands in.
struct RankedColumns {
    Block<RankedColumn> columns;
    // A row for each variable, an item for each sample.
    Block<std::uint32_t> doubledRanks;
    Block<std::uint32_t> runs;
    Block<std::uint32_t> sorted;
    // Scratch of each worker.
    Block<double> values;
    Block<SortItem> items;

    // Success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(const DataMatrix& data, Index workers = 1);
    // Ranks column j. Several workers, numbered from 0, can rank a column each at once.
    void rank(const DataMatrix& data, Index j, Index worker = 0);
};
