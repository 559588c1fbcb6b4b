#include "batch/sample_groups.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "batch/field_values.h"

namespace {

bool isNumber(const char* text) {
    char* end = nullptr;
    std::strtod(text, &end);
    return end != text && *end == '\0';
}

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

bool findGroups(const char* variable, const DataSet& data, SampleGroups& groups, Complaint& complaint) {
    const CellTable& cells = data.cells;
    const std::int32_t column = findColumn(cells, variable);
    if (column == 0) {
        complaint.say("--colour-by: there is no variable '%.200s'", variable);
        return false;
    }
    if (groups.groupOf.allocate(data.loaded.samples) != success) {
        complaint.say("no memory for --colour-by");
        return false;
    }
    const char* found[SampleGroups::most];
    Index count = 0, sample = 0;
    for (std::int32_t row = 1; row < cells.rows && sample < groups.groupOf.size(); ++row) {
        if (isLeftOut(data, row)) continue;
        const char* const text = cells.cell(row, column);
        const std::int32_t number = text[0] != '\0' ? numberOf(text, found, count) : -1;
        if (number < 0 && text[0] != '\0') {
            complaint.say("--colour-by: '%.200s' has more than %td values", variable, SampleGroups::most);
            return false;
        }
        groups.groupOf[sample++] = number;
    }
    if (count == 0 || groups.names.allocate(count) != success) {
        complaint.say("--colour-by: '%.200s' has no values", variable);
        return false;
    }

    std::int32_t order[SampleGroups::most], places[SampleGroups::most];
    for (std::int32_t k = 0; k < count; ++k) order[k] = k;
    if (std::all_of(found, found + count, isNumber)) {
        std::stable_sort(order, order + count, [&](std::int32_t a, std::int32_t b) {
            return std::strtod(found[a], nullptr) < std::strtod(found[b], nullptr);
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
    return true;
}
