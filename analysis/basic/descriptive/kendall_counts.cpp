#include "analysis/basic/descriptive/kendall_counts.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace {

// Sorts `items` and returns how many pairs stood in descending order; `scratch` has the same size.
Index countInversions(std::int32_t* items, Index count, std::int32_t* scratch) {
    Index inversions = 0;
    for (Index width = 1; width < count; width *= 2) {
        for (Index begin = 0; begin < count; begin += 2 * width) {
            const Index middle = std::min(begin + width, count);
            const Index end = std::min(begin + 2 * width, count);
            Index left = begin;
            Index right = middle;
            for (Index to = begin; to < end; ++to) {
                if (right == end || (left < middle && items[left] <= items[right])) {
                    scratch[to] = items[left++];
                } else {
                    inversions += middle - left;
                    scratch[to] = items[right++];
                }
            }
        }
        std::swap(items, scratch);
    }
    return inversions;
}

// Pairs within the runs of equal neighbours.
double countTiedPairs(const std::int32_t* begin, const std::int32_t* end) {
    double pairs = 0.0;
    while (begin < end) {
        const std::int32_t* next = begin;
        while (next < end && *next == *begin) ++next;
        const double length = static_cast<double>(next - begin);
        pairs += 0.5 * length * (length - 1.0);
        begin = next;
    }
    return pairs;
}

} // namespace

KendallCounts countAllPairs(const DataMatrix& data, Index i, Index j) {
    const Index samples = data.samples;
    KendallCounts counts = {0.0, 0.0, 0.0};
    for (Index k = 0; k < samples; ++k) {
        const double* x = data.row(k);
        for (Index l = k + 1; l < samples; ++l) {
            const double* y = data.row(l);
            const double a1 = x[i] - y[i];
            const double a2 = x[j] - y[j];
            if (a1 * a2 != 0.0) {
                counts.first += 1.0;
                counts.second += 1.0;
                counts.s += a1 * a2 > 0.0 ? 1.0 : -1.0;
            } else {
                if (a1 != 0.0) counts.first += 1.0;
                if (a2 != 0.0) counts.second += 1.0;
            }
        }
    }
    return counts;
}

KendallCounts countSortedPairs(const DataMatrix& data, const RankedColumn& first, const RankedColumn& second,
                               std::int32_t* scratch) {
    // The runs of the second column in the order of the first column; each run of the first one begins where
    // the one before it ends, and its begin moves on to its end while it is filled.
    const Index samples = data.samples;
    std::int32_t* const runEnds = scratch;
    std::int32_t* const sequence = scratch + samples;
    std::int32_t* const sorted = sequence + samples;
    std::fill_n(runEnds, first.runCount, 0);
    for (Index s = 0; s < samples; ++s) ++runEnds[first.runs[s]];
    std::exclusive_scan(runEnds, runEnds + first.runCount, runEnds, std::int32_t{0});
    for (Index at = 0; at < samples; ++at) {
        const std::int32_t sample = second.sorted[at];
        sequence[runEnds[first.runs[sample]]++] = second.runs[sample];
    }

    double tiedInBoth = 0.0;
    for (Index run = 0, begin = 0; run < first.runCount; begin = runEnds[run++]) {
        tiedInBoth += countTiedPairs(sequence + begin, sequence + runEnds[run]);
    }
    const double n = data.samples;
    const double pairs = 0.5 * n * (n - 1.0);
    const double discordant = static_cast<double>(countInversions(sequence, samples, sorted));
    const double untied = pairs - first.tiedPairs - second.tiedPairs + tiedInBoth;
    return {untied - 2.0 * discordant, pairs - first.tiedPairs, pairs - second.tiedPairs};
}

KendallCounts countPairs(const DataMatrix& data, Index i, Index j, const RankedColumn& first,
                         const RankedColumn& second, std::int32_t* scratch) {
    const bool inRange =
        std::isfinite(first.range) && std::isfinite(second.range) && first.leastGap * second.leastGap != 0.0;
    return inRange ? countSortedPairs(data, first, second, scratch) : countAllPairs(data, i, j);
}
