#include "analysis/multivariate/cluster/cluster_merging.h"

#include <algorithm>

#include "analysis/multivariate/cluster/cluster_rules.h"

// Each cluster remembers the nearest of those after it, so that finding the closest pair is one pass over the
// clusters, and only those whose nearest one was merged or moved away look for another.

namespace {

constexpr double farthest = 1e300;
constexpr std::int32_t none = -1;

struct Agglomeration {
    ClusterMerging& work;
    Index activeCount;

    Index cluster(Index place) const { return work.active[place]; }
};

// Scans the clusters after the one at `place`.
void findNearest(Agglomeration& state, Index place) {
    ClusterMerging& work = state.work;
    const Index k = state.cluster(place);
    const Index row = work.rowStart(k);
    double least = farthest;
    std::int32_t nearest = none;
    for (Index at = place + 1; at < state.activeCount; ++at) {
        const double distance = work.distances[row + state.cluster(at)];
        if (distance < least) {
            least = distance;
            nearest = work.active[at];
        }
    }
    work.nearest[k] = nearest;
    work.nearestDistance[k] = least;
}

// The place of the first member of the closest pair, or activeCount when there is none.
Index findClosest(const Agglomeration& state) {
    double least = farthest;
    Index place = state.activeCount;
    for (Index at = 0; at < state.activeCount; ++at) {
        const double distance = state.work.nearestDistance[state.cluster(at)];
        if (distance < least) {
            least = distance;
            place = at;
        }
    }
    return place;
}

// The distances of all active clusters to cluster c; any value for c itself.
void gatherDistances(const Agglomeration& state, Index c, Block<double>& out) {
    const ClusterMerging& work = state.work;
    Index at = 0;
    for (; at < state.activeCount && state.cluster(at) < c; ++at) {
        out[at] = work.distances[work.rowStart(state.cluster(at)) + c];
    }
    if (at < state.activeCount && state.cluster(at) == c) ++at;
    const Index row = work.rowStart(c);
    for (; at < state.activeCount; ++at) out[at] = work.distances[row + state.cluster(at)];
}

// Replaces toSecond by the distances to the union of i and j, which are x apart.
template <class Rule>
void combineDistances(Agglomeration& state, const Rule& rule, Index i, Index j, double x) {
    ClusterMerging& work = state.work;
    const UnitedPair pair = {work.added[i], work.added[j], x};
    for (Index at = 0; at < state.activeCount; ++at) {
        const int added = work.added[state.cluster(at)];
        work.toSecond[at] = rule(pair, added, work.toFirst[at], work.toSecond[at]);
    }
}

// Keeps the nearest of the cluster at `place`, which is before j: i is gone and j now stands at `distance`.
void refreshNearest(Agglomeration& state, Index place, std::int32_t i, std::int32_t j, double distance) {
    ClusterMerging& work = state.work;
    std::int32_t& nearest = work.nearest[state.cluster(place)];
    double& least = work.nearestDistance[state.cluster(place)];
    if (distance < least || (distance == least && j <= nearest)) {
        nearest = j;
        least = distance;
    } else if (nearest == i || nearest == j) {
        findNearest(state, place);
    }
}

// Puts cluster i into j. Distances across the rows are fetched and stored in loops of their own, where memory
// answers many at a time.
template <class Rule> void unite(Agglomeration& state, const Rule& rule, const ClusterMerge& merge) {
    ClusterMerging& work = state.work;
    const Index i = merge.first;
    const Index j = merge.second;
    gatherDistances(state, i, work.toFirst);
    gatherDistances(state, j, work.toSecond);
    combineDistances(state, rule, i, j, merge.level);
    Index place = 0;
    for (; state.cluster(place) < j; ++place) {
        work.distances[work.rowStart(state.cluster(place)) + j] = work.toSecond[place];
    }
    const Index row = work.rowStart(j);
    for (Index at = place + 1; at < state.activeCount; ++at) {
        work.distances[row + state.cluster(at)] = work.toSecond[at];
    }
    for (Index at = 0; at < place; ++at) {
        refreshNearest(state, at, merge.first, merge.second, work.toSecond[at]);
    }
    findNearest(state, place);
    work.added[j] += work.added[i] + 1;
}

void removeActive(Agglomeration& state, Index place) {
    std::int32_t* active = state.work.active.data();
    std::copy(active + place + 1, active + state.activeCount, active + place);
    --state.activeCount;
}

template <class Rule> ErrorCode mergeAll(const Rule& rule, const Stage& stage, ClusterMerging& merging) {
    Agglomeration state = {merging, merging.count};
    for (Index k = 0; k < merging.count; ++k) merging.active[k] = static_cast<std::int32_t>(k);
    for (Index at = 0; at < merging.count; ++at) findNearest(state, at);
    for (ClusterMerge& merge : merging.merges) {
        const ErrorCode code = stage.advance(merging.count - state.activeCount, merging.count);
        if (code != success) return code;
        const Index place = findClosest(state);
        if (place == state.activeCount) return illegalData;
        const std::int32_t first = merging.active[place];
        // All clusters have the same rank, so it is always the first of the pair that gives its number up.
        merge = {first, merging.nearest[first], merging.nearestDistance[first]};
        removeActive(state, place);
        unite(state, rule, merge);
    }
    return success;
}

} // namespace

ErrorCode ClusterMerging::allocate(Index items) {
    count = items;
    return distances.allocate(items * (items - 1) / 2) | merges.allocate(items - 1) | active.allocate(items) |
           added.allocate(items) | nearest.allocate(items) | nearestDistance.allocate(items) |
           toFirst.allocate(items) | toSecond.allocate(items);
}

ErrorCode mergeClusters(int criterion, ClusterMerging& merging, const Stage& stage) {
    return mergeAll(ClassicRule(criterion), stage, merging);
}

ErrorCode mergeClustersByTextbook(int criterion, ClusterMerging& merging, const Stage& stage) {
    switch (criterion) {
    case 0:
        return mergeAll(NearestNeighbour(), stage, merging);
    case 1:
        return mergeAll(FurthestNeighbour(), stage, merging);
    case 2:
        return mergeAll(Median(), stage, merging);
    case 3:
        return mergeAll(GroupAverage(), stage, merging);
    case 4:
        return mergeAll(Centroid(), stage, merging);
    default:
        return mergeAll(Ward(), stage, merging);
    }
}

void cutTree(const ClusterMerge* merges, Index items, Index clusters, std::int32_t* numbers) {
    for (Index i = 0; i < items; ++i) numbers[i] = static_cast<std::int32_t>(i);
    for (Index s = 0; s < items - clusters; ++s) numbers[merges[s].first] = merges[s].second;
    // A cluster has the number of its last item, where a step can only lead to a later one.
    for (Index i = items; i-- > 0;) numbers[i] = numbers[numbers[i]];
    std::int32_t count = 0;
    for (Index i = 0; i < items; ++i) {
        if (numbers[i] >= 0) {
            std::int32_t& last = numbers[numbers[i]]; // less than 0 once the cluster has its new number
            if (last >= 0) last = -++count;
            numbers[i] = last;
        }
        numbers[i] = -numbers[i];
    }
}
