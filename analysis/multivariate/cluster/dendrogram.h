#pragma once

#include "analysis/multivariate/cluster/cluster_merging.h"

// Characters that the longest row of a dendrogram has.
constexpr Index dendrogramWidth(Index items) {
    return 2 * items;
}

// Writes the row of one item (from 0) of the dendrogram of `steps` merges into `row`, two characters for each
// step that it takes part in or is crossed by; without an end. Items stand in their own order, so that the
// lines of clusters that are not neighbours cross. Returns the length. Each row is made alone, in time in
// proportion to the steps: the whole grid of items by steps is never held.
Index writeDendrogramRow(const ClusterMerge* merges, Index steps, Index item, char* row);
