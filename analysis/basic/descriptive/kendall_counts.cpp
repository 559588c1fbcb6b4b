#include "analysis/basic/descriptive/kendall_counts.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Sorts `items` and returns how many pairs stood in descending order; `scratch` has the same size.
std::int64_t countInversions(std::int32_t* items, std::int32_t count, std::int32_t* scratch) {
    std::int64_t inversions = 0;
    for (std::int64_t width = 1; width < count; width *= 2) {
        for (std::int64_t begin = 0; begin < count; begin += 2 * width) {
            const std::int64_t middle = std::min<std::int64_t>(begin + width, count);
            const std::int64_t end = std::min<std::int64_t>(begin + 2 * width, count);
            std::int64_t left = begin;
            std::int64_t right = middle;
            for (std::int64_t to = begin; to < end; ++to) {
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

KendallCounts countAllPairs(const DataMatrix& data, std::int32_t i, std::int32_t j) {
    const std::ptrdiff_t stride = data.variables;
    const double* values = data.values.data();
    KendallCounts counts = {0.0, 0.0, 0.0};
    for (std::int32_t k = 0; k < data.samples; ++k) {
        for (std::int32_t l = k + 1; l < data.samples; ++l) {
            const double a1 = values[k * stride + i] - values[l * stride + i];
            const double a2 = values[k * stride + j] - values[l * stride + j];
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

KendallCounts countPairs(const DataMatrix& data, std::int32_t i, std::int32_t j, const RankedColumn& first,
                         const RankedColumn& second, std::int32_t* scratch) {
    const bool inRange =
        std::isfinite(first.range) && std::isfinite(second.range) && first.leastGap * second.leastGap != 0.0;
    if (!inRange) return countAllPairs(data, i, j);

    // The runs of the second column, by the first column and then by themselves.
    const std::int32_t samples = data.samples;
    std::int32_t* const runEnds = scratch;
    std::int32_t* const sequence = scratch + samples;
    std::int32_t* const sorted = sequence + samples;
    std::fill_n(runEnds, first.runCount, 0);
    for (std::int32_t s = 0; s < samples; ++s) ++runEnds[first.runs[s]];
    std::int32_t begin = 0;
    for (std::int32_t run = 0; run < first.runCount; ++run) {
        begin += std::exchange(runEnds[run], begin);
    }
    for (std::int32_t at = 0; at < samples; ++at) {
        const std::int32_t sample = second.sorted[at];
        sequence[runEnds[first.runs[sample]]++] = second.runs[sample];
    }

    double tiedInBoth = 0.0;
    begin = 0;
    for (std::int32_t run = 0; run < first.runCount; begin = runEnds[run++]) {
        tiedInBoth += countTiedPairs(sequence + begin, sequence + runEnds[run]);
    }
    const double pairs = 0.5 * samples * (samples - 1.0);
    const double discordant = static_cast<double>(countInversions(sequence, samples, sorted));
    const double untied = pairs - first.tiedPairs - second.tiedPairs + tiedInBoth;
    return {untied - 2.0 * discordant, pairs - first.tiedPairs, pairs - second.tiedPairs};
}
