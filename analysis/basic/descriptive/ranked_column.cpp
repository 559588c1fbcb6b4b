#include "analysis/basic/descriptive/ranked_column.h"

#include <algorithm>
#include <limits>

#include "numeric/sort.h"

namespace {

// `keys` and `order` are scratch.
void rankColumn(const DataMatrix& data, Index j, double* keys, double* order, RankedColumn& column) {
    const Index samples = data.samples;
    for (Index s = 0; s < samples; ++s) {
        keys[s] = data.at(s, j);
        order[s] = static_cast<double>(s);
    }
    SortKeysWithCompanion(samples, keys, order);

    column.runCount = 0;
    column.tieSum = 0.0;
    column.tiedPairs = 0.0;
    column.ties = {};
    column.leastGap = std::numeric_limits<double>::infinity();
    column.range = samples > 0 ? keys[samples - 1] - keys[0] : 0.0;
    for (Index first = 0, next = 0; first < samples; first = next) {
        next = first + 1;
        while (next < samples && keys[next] == keys[first]) ++next;
        const double length = static_cast<double>(next - first);
        const double meanRank = 0.5 * static_cast<double>(first + 1 + next);
        column.tieSum += length * length * length - length;
        column.tiedPairs += 0.5 * length * (length - 1.0);
        column.ties.add(next - first);
        if (next < samples) column.leastGap = std::min(column.leastGap, keys[next] - keys[first]);
        for (Index at = first; at < next; ++at) {
            const auto sample = static_cast<std::int32_t>(order[at]);
            column.sorted[at] = sample;
            column.runs[sample] = column.runCount;
            column.ranks[sample] = meanRank;
        }
        ++column.runCount;
    }
}

} // namespace

ErrorCode RankedColumns::rank(const DataMatrix& data) {
    const Index samples = data.samples;
    const Index variables = data.variables;
    Block<double> keys;
    Block<double> order;
    const ErrorCode code = columns.allocate(variables) | ranks.allocate(variables, samples) |
                           runs.allocate(variables * samples) | sorted.allocate(variables * samples) |
                           keys.allocate(samples) | order.allocate(samples);
    if (code != success) return code;

    for (Index j = 0; j < variables; ++j) {
        RankedColumn& column = columns[j];
        column.ranks = ranks.row(j);
        column.runs = runs.data() + j * samples;
        column.sorted = sorted.data() + j * samples;
        rankColumn(data, j, keys.data(), order.data(), column);
    }
    return success;
}
