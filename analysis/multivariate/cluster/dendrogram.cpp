#include "analysis/multivariate/cluster/dendrogram.h"

#include <algorithm>

std::size_t writeDendrogramRow(const ClusterMerge* merges, std::size_t steps, std::size_t item, char* row) {
    if (steps == 0) return 0;
    const auto first = [merges](std::size_t step) { return static_cast<std::size_t>(merges[step].first); };
    const auto second = [merges](std::size_t step) { return static_cast<std::size_t>(merges[step].second); };
    const bool survives = item == second(steps - 1);

    std::size_t lastInSpan = 0;
    std::size_t mergedAway = steps; // the step after which the item's own line ends
    for (std::size_t step = 0; step < steps; ++step) {
        if (item >= first(step) && item <= second(step)) lastInSpan = step;
        if (item == first(step)) mergedAway = step;
    }

    char* end = row;
    for (std::size_t step = 0; step <= lastInSpan; ++step) {
        const char* glyph = " |";
        if (item == first(step) || item == second(step)) {
            glyph = "-+";
        } else if (item < first(step) || item > second(step)) {
            glyph = step > mergedAway ? "  " : "--";
        }
        end = std::copy_n(glyph, 2, end);
    }
    if (survives) end = std::copy_n("--", 2, end);
    return static_cast<std::size_t>(end - row);
}
