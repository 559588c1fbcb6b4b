#pragma once

#include "analysis/basic/descriptive/ranked_column.h"

// The pairs of samples as Kendall's tau counts them. i and j number the columns of the data.
struct KendallCounts {
    double s;      // concordant pairs less discordant ones
    double first;  // pairs that differ in the first column
    double second; // pairs that differ in the second column
};

// Counts by the sign of the product of both differences, over all pairs: O(N^2).
KendallCounts countAllPairs(const DataMatrix& data, Index i, Index j);

// The counts by the order of the values, in O(N log N): the discordant pairs are those that stand in
// descending order in the second column when the first one ascends (Knight 1966), counted bit by bit of its
// ranks. `scratch` holds 3 N integers.
KendallCounts countSortedPairs(const DataMatrix& data, const RankedColumn& first, const RankedColumn& second,
                               std::uint32_t* scratch);

// The same, but all pairs are counted where a product of differences may leave the range of a double.
KendallCounts countPairs(const DataMatrix& data, Index i, Index j, const RankedColumn& first,
                         const RankedColumn& second, std::uint32_t* scratch);
