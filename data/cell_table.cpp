#include "data/cell_table.h"

ErrorCode reduceToLabels(CellTable& table) {
    if (table.isReduced) return success;
    TextList kept;
    const TextPlaces places = table.texts.places();
    const Index names = table.cols, labels = table.rows - 1;
    const TextView header = TextView::every(places, names, 0, 1);
    const TextView column = TextView::every(places, labels, names, names);
    if (kept.allocate(names + labels, header.characters() + column.characters()) != success)
        return outOfMemory;
    for (Index j = 0; j < names; ++j) kept.set(j, header[j]);
    for (Index i = 0; i < labels; ++i) kept.set(names + i, column[i]);
    table.texts = std::move(kept);
    table.isReduced = true;
    return success;
}
