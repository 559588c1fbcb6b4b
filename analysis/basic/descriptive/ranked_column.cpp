#include "analysis/basic/descriptive/ranked_column.h"

#include <algorithm>
#include <limits>

namespace {

// By column.sorted, which is there.
void findRuns(const double* values, std::uint32_t samples, RankedColumn& column) {
    const auto valueAt = [&](std::uint32_t at) { return values[column.sorted[at]]; };
    column.runCount = 0;
    column.tieSum = 0.0;
    column.tiedPairs = 0.0;
    column.ties = {};
    column.leastGap = std::numeric_limits<double>::infinity();
    column.range = samples > 0 ? valueAt(samples - 1) - valueAt(0) : 0.0;
    for (std::uint32_t first = 0, next = 0; first < samples; first = next) {
        const double value = valueAt(first);
        next = first + 1;
        while (next < samples && valueAt(next) == value) ++next;
        if (next - first > 1) {
            const double length = static_cast<double>(next - first);
            column.tieSum += length * length * length - length;
            column.tiedPairs += 0.5 * length * (length - 1.0);
            column.ties.add(next - first);
        }
        if (next < samples) column.leastGap = std::min(column.leastGap, valueAt(next) - value);
        const std::uint32_t doubledRank = first + next + 1;
        for (std::uint32_t at = first; at < next; ++at) {
            column.runs[column.sorted[at]] = column.runCount;
            column.doubledRanks[column.sorted[at]] = doubledRank;
        }
        ++column.runCount;
    }
}

} // namespace

ErrorCode RankedColumns::allocate(const DataMatrix& data, Index workers) {
    const Index samples = data.samples;
    const Index variables = data.variables;
    return columns.allocate(variables) | doubledRanks.allocate(variables * samples) |
           runs.allocate(variables * samples) | sorted.allocate(variables * samples) |
           values.allocate(workers * samples) | items.allocate(2 * workers * samples);
}

void RankedColumns::rank(const DataMatrix& data, Index j, Index worker) {
    const auto samples = static_cast<std::uint32_t>(data.samples);
    RankedColumn& column = columns[j];
    column.doubledRanks = doubledRanks.data() + j * data.samples;
    column.runs = runs.data() + j * data.samples;
    column.sorted = sorted.data() + j * data.samples;
    double* const copied = values.data() + worker * data.samples;
    for (Index s = 0; s < samples; ++s) copied[s] = data.at(s, j);
    findAscendingOrder(copied, samples, items.data() + 2 * worker * data.samples, column.sorted);
    findRuns(copied, samples, column);
}
