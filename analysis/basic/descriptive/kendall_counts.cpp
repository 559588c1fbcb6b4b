#include "analysis/basic/descriptive/kendall_counts.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

namespace {

// Numbers of `bits` bits, in the order that they are added in. A number meets each one before it once: where
// their bits begin to differ. Node 1 counts the numbers so far whose first bit is 1, nodes 2 and 3 those
// among the numbers with a first bit 0 and 1 whose second bit is 1, and so on: below a node a 0 comes behind
// so many greater numbers. Without branches, as random ranks would mislead them.
class InversionTree {
public:
    // 2^bits counters, which are 0.
    InversionTree(std::uint32_t* counters, int bits) : counters_(counters), bits_(bits) {}

    // How many of the numbers before it are greater.
    std::uint64_t add(std::uint32_t number) {
        std::uint64_t greater = 0;
        std::uint32_t node = number | std::uint32_t{1} << bits_;
        for (int bit = 0; bit < bits_; ++bit) {
            const std::uint32_t one = node & 1;
            node >>= 1;
            const std::uint32_t count = counters_[node];
            greater += count & (one - 1);
            counters_[node] = count + one;
        }
        return greater;
    }

private:
    std::uint32_t* counters_;
    int bits_;
};

// The counters of so many bits stay in the processor's first cache.
constexpr int lowBits = 10;
constexpr std::uint32_t lowValues = std::uint32_t{1} << lowBits;

// How many pairs of items, each from 0 to values - 1, stand in descending order. More values than lowValues
// are dealt into buckets by their high bits first, in order; each bucket then counts by the low bits. `moved`
// and `scratch` have an item for each item, and values are not more than items.
std::uint64_t countInversions(const std::uint32_t* items, Index count, std::uint32_t values,
                              std::uint32_t* moved, std::uint32_t* scratch) {
    if (count == 0) return 0;
    std::uint32_t low[lowValues] = {};
    const int bits = static_cast<int>(std::bit_width(values - 1));
    std::uint64_t inversions = 0;
    if (bits <= lowBits) {
        InversionTree tree(low, bits);
        for (Index at = 0; at < count; ++at) inversions += tree.add(items[at]);
        return inversions;
    }
    const std::uint32_t buckets = std::uint32_t{1} << (bits - lowBits); // below count / 512
    std::uint32_t* const next = scratch;                                // where a bucket goes on
    std::uint32_t* const high = scratch + buckets;
    std::fill_n(scratch, 2 * buckets, 0);
    for (Index at = 0; at < count; ++at) ++next[items[at] >> lowBits];
    std::exclusive_scan(next, next + buckets, next, std::uint32_t{0});
    InversionTree tree(high, bits - lowBits);
    for (Index at = 0; at < count; ++at) {
        const std::uint32_t bucket = items[at] >> lowBits;
        inversions += tree.add(bucket);
        moved[next[bucket]++] = items[at] % lowValues;
    }
    for (std::uint32_t bucket = 0, at = 0; bucket < buckets; ++bucket) {
        std::fill_n(low, lowValues, 0);
        InversionTree inBucket(low, lowBits);
        for (; at < next[bucket]; ++at) inversions += inBucket.add(moved[at]);
    }
    return inversions;
}

// Pairs within the runs of equal neighbours.
double countTiedPairs(const std::uint32_t* begin, const std::uint32_t* end) {
    double pairs = 0.0;
    while (begin < end) {
        const std::uint32_t* next = begin;
        while (next < end && *next == *begin) ++next;
        const double length = static_cast<double>(next - begin);
        pairs += 0.5 * length * (length - 1.0);
        begin = next;
    }
    return pairs;
}

// Puts the runs of the other column into the order of the ascending one, those of tied samples in their own,
// and returns how many pairs are tied in both columns. `ends` has an item for each run of the ascending
// column.
double arrangeTied(const RankedColumn& ascending, const RankedColumn& other, Index samples,
                   std::uint32_t* sequence, std::uint32_t* ends) {
    // Each run begins where the one before it ends, and its begin moves on to its end while it is filled.
    std::fill_n(ends, ascending.runCount, 0);
    for (Index s = 0; s < samples; ++s) ++ends[ascending.runs[s]];
    std::exclusive_scan(ends, ends + ascending.runCount, ends, std::uint32_t{0});
    for (Index at = 0; at < samples; ++at) {
        const std::uint32_t sample = other.sorted[at];
        sequence[ends[ascending.runs[sample]]++] = other.runs[sample];
    }
    double tiedInBoth = 0.0;
    for (std::uint32_t run = 0, begin = 0; run < ascending.runCount; begin = ends[run++]) {
        tiedInBoth += countTiedPairs(sequence + begin, sequence + ends[run]);
    }
    return tiedInBoth;
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
                               std::uint32_t* scratch) {
    // Both columns count alike, so that with fewer ties is the one that ascends.
    const bool swapped = second.runCount > first.runCount;
    const RankedColumn& ascending = swapped ? second : first;
    const RankedColumn& other = swapped ? first : second;
    const Index samples = data.samples;
    std::uint32_t* const sequence = scratch;
    double tiedInBoth = 0.0;
    if (ascending.tiedPairs == 0.0) {
        for (Index at = 0; at < samples; ++at) sequence[at] = other.runs[ascending.sorted[at]];
    } else {
        tiedInBoth = arrangeTied(ascending, other, samples, sequence, scratch + samples);
    }
    const double n = data.samples;
    const double pairs = 0.5 * n * (n - 1.0);
    const double discordant = static_cast<double>(
        countInversions(sequence, samples, other.runCount, scratch + samples, scratch + 2 * samples));
    const double untied = pairs - first.tiedPairs - second.tiedPairs + tiedInBoth;
    return {untied - 2.0 * discordant, pairs - first.tiedPairs, pairs - second.tiedPairs};
}

KendallCounts countPairs(const DataMatrix& data, Index i, Index j, const RankedColumn& first,
                         const RankedColumn& second, std::uint32_t* scratch) {
    const bool inRange =
        std::isfinite(first.range) && std::isfinite(second.range) && first.leastGap * second.leastGap != 0.0;
    return inRange ? countSortedPairs(data, first, second, scratch) : countAllPairs(data, i, j);
}
