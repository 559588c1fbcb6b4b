#include "data/category_cross_table.h"

namespace {

// Adds the sample whose categories are `sample`, in ascending order, to the upper triangle.
void addSample(const Index* sample, Index variables, Index stride, std::int32_t* counts) {
    for (Index v = 0; v < variables; ++v) {
        std::int32_t* row = counts + sample[v] * stride;
        for (Index w = v; w < variables; ++w) ++row[sample[w]];
    }
}

} // namespace

ErrorCode CategoryCrossTable::allocate(const CategoryLayout& layout) {
    categories = layout.totalCategories;
    const Index count = categories;
    return counts.allocate(count * count) | sample.allocate(layout.first.size());
}

void fillCrossTable(const DataMatrix& data, const CategoryLayout& layout, CategoryCrossTable& table) {
    const Index variables = layout.first.size();
    const Index stride = table.categories;
    for (std::int32_t s = 0; s < data.samples; ++s) {
        for (Index v = 0; v < variables; ++v) {
            table.sample[v] = globalCategory(data, layout, s, v);
        }
        addSample(table.sample.data(), variables, stride, table.counts.data());
    }
    for (Index g = 1; g < stride; ++g) {
        for (Index h = 0; h < g; ++h) table.counts[g * stride + h] = table.counts[h * stride + g];
    }
}
