#include "numeric/sort.h"

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
