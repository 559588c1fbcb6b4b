#include "analysis/multivariate/cluster/dendrogram.h"

#include <algorithm>

Index writeDendrogramRow(const ClusterMerge* merges, Index steps, Index item, char* row) {
    if (steps == 0) return 0;
    const auto first = [merges](Index step) { return merges[step].first; };
    const auto second = [merges](Index step) { return merges[step].second; };
    const bool survives = item == second(steps - 1);

    Index lastInSpan = 0;
    Index mergedAway = steps; // the step after which the item's own line ends
    for (Index step = 0; step < steps; ++step) {
        if (item >= first(step) && item <= second(step)) lastInSpan = step;
        if (item == first(step)) mergedAway = step;
    }

    char* end = row;
    for (Index step = 0; step <= lastInSpan; ++step) {
        const char* glyph = " |";
        if (item == first(step) || item == second(step)) {
            glyph = "-+";
        } else if (item < first(step) || item > second(step)) {
            glyph = step > mergedAway ? "  " : "--";
        }
        end = std::copy_n(glyph, 2, end);
    }
    if (survives) end = std::copy_n("--", 2, end);
    return end - row;
}
