#include "numeric/sort.h"

#include <cstddef>
#include <utility>

namespace {

// Lets the item at root sink in the max-heap of the first count items.
void sink(std::size_t root, std::size_t count, double* keys, double* companion) {
    const double key = keys[root];
    const double item = companion[root];
    std::size_t child = 2 * root + 1;
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

} // namespace

ErrorCode SortKeysWithCompanion(int n, double* keys, double* companion) {
    if (n < 2) return success;
    const auto count = static_cast<std::size_t>(n);
    for (std::size_t root = count / 2; root-- > 0;) sink(root, count, keys, companion);
    for (std::size_t last = count - 1; last > 0; --last) {
        std::swap(keys[0], keys[last]);
        std::swap(companion[0], companion[last]);
        sink(0, last, keys, companion);
    }
    return success;
}
