#include "analysis/run/sample_groups.h"

#include <algorithm>
#include <cstring>

#include "data/number.h"

namespace {

// The number of a text among those found so far, which it may become one of; -1 when there are too many.
std::int32_t numberOf(const char* text, const char* (&found)[SampleGroups::most], Index& count) {
    for (Index k = 0; k < count; ++k) {
        if (std::strcmp(found[k], text) == 0) return static_cast<std::int32_t>(k);
    }
    if (count == SampleGroups::most) return -1;
    found[count] = text;
    return static_cast<std::int32_t>(count++);
}

} // namespace

GroupSearch findGroups(const DataSet& data, std::int32_t column, SampleGroups& groups) {
    const CellTable& cells = data.cells;
    groups.count = 0;
    if (groups.groupOf.allocate(data.loaded.samples) != success) return GroupSearch::noMemory;
    const char* found[SampleGroups::most];
    Index count = 0, sample = 0;
    for (std::int32_t row = 1; row < cells.rows && sample < groups.groupOf.size(); ++row) {
        if (isLeftOut(data, row)) continue;
        const char* const text = cells.cell(row, column);
        const std::int32_t number = text[0] != '\0' ? numberOf(text, found, count) : -1;
        if (number < 0 && text[0] != '\0') return GroupSearch::tooMany;
        groups.groupOf[sample++] = number;
    }
    if (count == 0) return GroupSearch::none;
    if (groups.names.allocate(count) != success) return GroupSearch::noMemory;

    std::int32_t order[SampleGroups::most], places[SampleGroups::most];
    for (std::int32_t k = 0; k < count; ++k) order[k] = k;
    if (std::all_of(found, found + count, isNumber)) {
        std::stable_sort(order, order + count, [&](std::int32_t a, std::int32_t b) {
            return parseNumber(found[a]) < parseNumber(found[b]);
        });
    }
    for (std::int32_t k = 0; k < count; ++k) {
        places[order[k]] = k;
        groups.names.set(k, found[order[k]]);
    }
    for (std::int32_t& group : groups.groupOf) {
        if (group >= 0) group = places[group];
    }
    groups.title.set("%s", cells.cell(0, column));
    groups.count = count;
    return GroupSearch::found;
}
