#pragma once

#include "data/categories.h"
#include "report/tables.h"

// "   ," and the label of a category, "%3d (%3d)" of its number within the item and of its index over all
// items, both from 1.
void WriteCategoryStart(Report& report, int category, int index);

// "  n," and the headings 1..count, each in a cell of this width.
void WriteNumberedHeader(Report& report, int count, int width);

// A line for each item, with the cells that writeItemCells(v) adds, and under it a row for each of its
// categories with the cells of writeCells(g); v and the index g over all items count from 0.
template <class WriteItemCells, class WriteCells>
void WriteCategoryRows(Report& report, const CategoryLayout& layout, const TextSlot* names,
                       WriteItemCells writeItemCells, WriteCells writeCells) {
    for (std::size_t v = 0; v < layout.first.size(); ++v) {
        WriteRowStart(report, static_cast<int>(v + 1), names[v].text);
        writeItemCells(v);
        WriteRowEnd(report);
        for (std::int32_t k = 0; k < layout.categoryCount[v]; ++k) {
            const std::int32_t g = layout.first[v] + k;
            WriteCategoryStart(report, k + 1, g + 1);
            writeCells(static_cast<std::size_t>(g));
            WriteRowEnd(report);
        }
    }
}

template <class WriteCells>
void WriteCategoryRows(Report& report, const CategoryLayout& layout, const TextSlot* names,
                       WriteCells writeCells) {
    WriteCategoryRows(
        report, layout, names, [](std::size_t) {}, writeCells);
}
