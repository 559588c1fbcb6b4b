#pragma once

#include "data/categories.h"
#include "report/cells.h"

// The row of a category goes on with that of its item: its label is "%3d (%3d)" of its number within the item
// and of its index over all items, both from 1.
void startCategoryRow(Report& report, Index category, Index index);

// The headings 1..count, each in a cell of this width.
void writeNumberedHeader(Report& report, Index count, int width);

// A line for each item, with the cells that writeItemCells(v) adds, and under it a row for each of its
// categories with the cells of writeCategoryCells(g); v and the index g over all items count from 0.
template <class WriteItemCells, class WriteCategoryCells>
void writeCategoryRows(Report& report, const CategoryLayout& layout, const TextView& names,
                       WriteItemCells writeItemCells, WriteCategoryCells writeCategoryCells) {
    for (Index v = 0; v < layout.first.size(); ++v) {
        startRow(report, v + 1, names[v]);
        writeItemCells(v);
        endRow(report);
        for (Index k = 0; k < layout.categoryCount[v]; ++k) {
            const Index g = layout.first[v] + k;
            startCategoryRow(report, k + 1, g + 1);
            writeCategoryCells(g);
            endRow(report);
        }
    }
}

template <class WriteCategoryCells>
void writeCategoryRows(Report& report, const CategoryLayout& layout, const TextView& names,
                       WriteCategoryCells writeCategoryCells) {
    writeCategoryRows(
        report, layout, names, [](Index) {}, writeCategoryCells);
}
