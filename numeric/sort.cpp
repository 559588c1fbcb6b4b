#include "numeric/sort.h"

#include <bit>
#include <numeric>
#include <utility>

namespace {

// Lets the item at root sink in the max-heap of the first count items.
void sink(Index root, Index count, double* keys, double* companion) {
    const double key = keys[root];
    const double item = companion[root];
    Index child = 2 * root + 1;
    while (child < count) {
        if (child + 1 < count && keys[child + 1] > keys[child]) ++child;
        if (!(keys[child] > key)) break;
        keys[root] = keys[child];
        companion[root] = companion[child];
        root = child;
        child = 2 * root + 1;
    }
    keys[root] = key;
    companion[root] = item;
}

// Bits that ascend as the values do: the sign comes first, and negative values run the other way. -0 is 0.
std::uint64_t ascendingBits(double value) {
    constexpr std::uint64_t sign = std::uint64_t{1} << 63;
    const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

constexpr int keyBytes = 8;
constexpr int byteValues = 256;

std::size_t byteOf(std::uint64_t key, int byte) {
    return static_cast<std::size_t>(key >> (8 * byte)) % byteValues;
}

} // namespace

ErrorCode SortKeysWithCompanion(Index n, double* keys, double* companion) {
    if (n < 2) return success;
    for (Index root = n / 2; root-- > 0;) sink(root, n, keys, companion);
    for (Index last = n - 1; last > 0; --last) {
        std::swap(keys[0], keys[last]);
        std::swap(companion[0], companion[last]);
        sink(0, last, keys, companion);
    }
    return success;
}

void findAscendingOrder(const double* values, std::uint32_t n, SortItem* scratch, std::uint32_t* order) {
    SortItem* items = scratch;
    SortItem* moved = scratch + n;
    std::uint32_t counts[keyBytes][byteValues] = {};
    for (std::uint32_t place = 0; place < n; ++place) {
        items[place] = {ascendingBits(values[place]), place};
        for (int byte = 0; byte < keyBytes; ++byte) ++counts[byte][byteOf(items[place].key, byte)];
    }
    for (int byte = 0; byte < keyBytes && n > 0; ++byte) {
        std::uint32_t* const next = counts[byte];
        if (next[byteOf(items[0].key, byte)] == n) continue; // all have the same one
        std::exclusive_scan(next, next + byteValues, next, std::uint32_t{0});
        for (std::uint32_t at = 0; at < n; ++at) moved[next[byteOf(items[at].key, byte)]++] = items[at];
        std::swap(items, moved);
    }
    for (std::uint32_t at = 0; at < n; ++at) order[at] = items[at].place;
}
