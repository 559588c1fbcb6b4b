#pragma once

#include "data/data_set.h"

// The largest number of categories of a variable and of groups.
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
ErrorCode CategoricalCheck(const DataMatrix& data, std::int32_t variables, CategoryLayout& layout);

// The same for one column that holds group numbers: success with their count, or illegalGroupVariable.
ErrorCode checkGroupVariable(const DataMatrix& data, std::int32_t column, std::int32_t& groups);

// The category of a sample in a checked column, from 0.
inline std::int32_t categoryOf(const DataMatrix& data, std::int32_t sample, std::int32_t variable) {
    const std::size_t at = static_cast<std::size_t>(sample) * static_cast<std::size_t>(data.variables) +
                           static_cast<std::size_t>(variable);
    return static_cast<std::int32_t>(data.values[at]) - 1;
}

// The global index of the category of a sample in a variable of the layout.
inline std::size_t globalCategory(const DataMatrix& data, const CategoryLayout& layout, std::int32_t sample,
                                  std::size_t variable) {
    const std::int32_t category = categoryOf(data, sample, static_cast<std::int32_t>(variable));
    return static_cast<std::size_t>(layout.first[variable]) + static_cast<std::size_t>(category);
}

// The global indices of all categories but the first of each variable, its reference: totalCategories less
// the number of variables.
void listKeptCategories(const CategoryLayout& layout, std::size_t* kept);
