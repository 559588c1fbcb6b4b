#pragma once

#include <cstdint>

#include "numeric/block.h"
#include "report/screens.h"

// One step of an agglomeration: cluster `first` goes into cluster `second`, which keeps its number. Items
// count from 0 and are clusters of one at the start; first < second.
struct ClusterMerge {
    std::int32_t first;
    std::int32_t second;
    double level; // of the distances that were given
};

// The distances of `count` items and their agglomeration.
struct ClusterMerging {
    Index count = 0;
    Block<double> distances;       // of the pairs (0,1), (0,2), ... (1,2), ...; overwritten while merging
    Block<ClusterMerge> merges;    // count - 1, in order
    Block<std::int32_t> active;    // clusters not merged away yet, ascending
    Block<std::int32_t> added;     // items of each cluster beyond the first
    Block<std::int32_t> nearest;   // of each cluster among the active ones after it, the first of equal ones
    Block<double> nearestDistance; // to it
    Block<double> toFirst;         // scratch: of each active cluster
    Block<double> toSecond;

    // Zero-filled arrays for items >= 1; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index items);

    // The distance of items a and b stands at rowStart(a) + b, a < b; the first start is -1.
    Index rowStart(Index a) const { return a * (2 * count - a - 1) / 2 - a - 1; }
};

// Numbers the clusters that the merges leave when `clusters` are left (1 .. items), from 1 in the order of
// their first items, into `numbers`, one for each item.
void cutTree(const ClusterMerge* merges, Index items, Index clusters, std::int32_t* numbers);

// Merges the two closest clusters until one is left, and combines their distances to the others by a rule of
// the kind of Lance and Williams (1967) whose coefficients are made from the number of the criterion: 0
// nearest neighbour, 1 furthest neighbour, 2 median, 3 group average, 4 centroid, 5 Ward. They are not those
// that go with these names elsewhere, and are kept so that reports stay comparable. Of equally close pairs
// the first in the order of `distances` is merged. Returns success, or illegalData when no pair is closer
// than 1e300.
[[nodiscard]] ErrorCode mergeClusters(int criterion, ClusterMerging& merging, const Stage& stage = {});

// The same by the rules that these names mean since Lance and Williams (1967): of squared distances for 2, 4
// and 5, of distances for the others. Of equally close pairs it is the first one, too.
[[nodiscard]] ErrorCode mergeClustersByTextbook(int criterion, ClusterMerging& merging,
                                                const Stage& stage = {});
