#pragma once

#include "data/categories.h"

// How many samples have category g of one variable and category h of another, both indices over all variables
// from 0. The diagonal has the frequency of each category; two categories of one variable never meet.
struct CategoryCrossTable {
    std::int32_t categories = 0;
    Block<std::int32_t> counts; // categories x categories, symmetric
    Block<Index> sample;        // scratch: the categories of one sample

    [[nodiscard]] ErrorCode allocate(const CategoryLayout& layout);

    std::int32_t at(Index g, Index h) const { return counts[g * categories + h]; }
};

// Fills a zero table from the columns of the layout, in one pass over the samples.
void fillCrossTable(const DataMatrix& data, const CategoryLayout& layout, CategoryCrossTable& table);
