#include "data/categories.h"

#include <algorithm>
#include <cmath>

namespace {

// The groups of moments are there without gaps.
std::int32_t countGroups(const MomentTable& moments) {
    return moments.groups >= 2 && moments.groups <= mostCategories ? moments.groups : 0;
}

// The number of categories of a column, or 0 when it does not hold categories.
std::int32_t countCategories(const DataMatrix& data, std::int32_t column) {
    if (data.moments != nullptr) return countGroups(*data.moments);
    bool present[mostCategories] = {};
    std::int32_t largest = 0;
    const double* value = data.values.data() + column;
    for (std::int32_t s = 0; s < data.samples; ++s, value += data.variables) {
        if (!(*value >= 1.0 && *value <= mostCategories) || *value != std::trunc(*value)) return 0;
        const std::int32_t category = static_cast<std::int32_t>(*value);
        present[category - 1] = true;
        largest = std::max(largest, category);
    }
    if (largest < 2) return 0;
    return std::all_of(present, present + largest, [](bool is) { return is; }) ? largest : 0;
}

} // namespace

ErrorCode CategoricalCheck(const DataMatrix& data, std::int32_t variables, CategoryLayout& layout) {
    layout.totalCategories = 0;
    const Index count = std::max(variables, 0);
    const ErrorCode code = layout.categoryCount.allocate(count) | layout.first.allocate(count);
    if (code != success) return code;
    for (std::int32_t v = 0; v < variables; ++v) {
        const std::int32_t categories = countCategories(data, v);
        if (categories == 0) return illegalCategoricalData;
        layout.categoryCount[v] = categories;
        layout.first[v] = layout.totalCategories;
        layout.totalCategories += categories;
    }
    return success;
}

ErrorCode checkGroupVariable(const DataMatrix& data, std::int32_t column, std::int32_t& groups) {
    groups = countCategories(data, column);
    return groups > 0 ? success : illegalGroupVariable;
}

void listKeptCategories(const CategoryLayout& layout, Index* kept) {
    for (Index v = 0; v < layout.first.size(); ++v) {
        const Index first = layout.first[v];
        const Index end = first + layout.categoryCount[v];
        for (Index g = first + 1; g < end; ++g) *kept++ = g;
    }
}
