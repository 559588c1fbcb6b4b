#pragma once

#include "data/data_set.h"

// The largest number of categories of a variable, and of groups.
constexpr std::int32_t mostCategories = 64;

// The categories of the first columns of a data matrix. Their global indices count from 0, those of variable
// 0 first.
struct CategoryLayout {
    Block<std::int32_t> categoryCount; // of each variable
    Block<std::int32_t> first;         // global index of the first category of each variable
    std::int32_t totalCategories = 0;
};

// Checks that the first `variables` columns hold categories: whole numbers from 1 to 64, all of them up to
// the largest one, which is at least 2. Returns success with the layout, illegalCategoricalData or
// outOfMemory.
[[nodiscard]] ErrorCode CategoricalCheck(const DataMatrix& data, std::int32_t variables,
                                         CategoryLayout& layout);

// The same for one column that holds group numbers: success with their count, or illegalGroupVariable.
[[nodiscard]] ErrorCode checkGroupVariable(const DataMatrix& data, std::int32_t column, std::int32_t& groups);

// The category of a sample in a checked column, from 0.
inline std::int32_t categoryOf(const DataMatrix& data, Index sample, Index variable) {
    return static_cast<std::int32_t>(data.at(sample, variable)) - 1;
}

// The global index of the category of a sample in a variable of the layout.
inline Index globalCategory(const DataMatrix& data, const CategoryLayout& layout, Index sample,
                            Index variable) {
    return layout.first[variable] + categoryOf(data, sample, variable);
}

// The global indices of all categories but the first of each variable, its reference: totalCategories less
// the number of variables.
void listKeptCategories(const CategoryLayout& layout, Index* kept);
