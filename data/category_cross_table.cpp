#include "data/category_cross_table.h"

namespace {

// Adds the sample whose categories are `sample`, in ascending order, to the upper triangle.
void addSample(const std::size_t* sample, std::size_t variables, std::size_t stride, std::int32_t* counts) {
    for (std::size_t v = 0; v < variables; ++v) {
        std::int32_t* row = counts + sample[v] * stride;
        for (std::size_t w = v; w < variables; ++w) ++row[sample[w]];
    }
}

} // namespace

ErrorCode CategoryCrossTable::allocate(const CategoryLayout& layout) {
    categories = layout.totalCategories;
    const std::size_t count = static_cast<std::size_t>(categories);
    return counts.allocate(count * count) | sample.allocate(layout.first.size());
}

void fillCrossTable(const DataMatrix& data, const CategoryLayout& layout, CategoryCrossTable& table) {
    const std::size_t variables = layout.first.size();
    const std::size_t stride = static_cast<std::size_t>(table.categories);
    for (std::int32_t s = 0; s < data.samples; ++s) {
        for (std::size_t v = 0; v < variables; ++v) {
            table.sample[v] = globalCategory(data, layout, s, v);
        }
        addSample(table.sample.data(), variables, stride, table.counts.data());
    }
    for (std::size_t g = 1; g < stride; ++g) {
        for (std::size_t h = 0; h < g; ++h) table.counts[g * stride + h] = table.counts[h * stride + g];
    }
}
