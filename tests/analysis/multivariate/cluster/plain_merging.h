#pragma once

#include <cmath>
#include <utility>
#include <vector>

#include "analysis/multivariate/cluster/cluster_merging.h"

// mergeClusters as its rule reads, with a look at every pair in every step; rank is what decides which of the
// two clusters gives its number up.
inline ErrorCode mergePlainly(int c, ClusterMerging& merging) {
    const auto distance = [&merging](Index a, Index b) -> double& {
        return merging.distances[a < b ? merging.rowStart(a) + b : merging.rowStart(b) + a];
    };
    const double gamma = (c - 0.5) * ((5 - c) % 4), e = ((5 - c) % 3) * 0.5;
    const int u = (c + 1) % 6, w = (c + 1) % 5 - u, t = (c + 1) % 4;
    const Index n = merging.count;
    std::vector<int> s(n), rank(n, static_cast<int>(n));
    for (ClusterMerge& merge : merging.merges) {
        double x = 1e300;
        Index i = n, j = n;
        for (Index a = 0; a < n; ++a) {
            for (Index b = a + 1; b < n && rank[a] >= 0; ++b) {
                if (rank[b] < 0 || !(distance(a, b) < x)) continue;
                x = distance(a, b), i = a, j = b;
            }
        }
        if (i == n) return illegalData;
        if (rank[i] > rank[j]) std::swap(i, j);
        merge = {static_cast<std::int32_t>(i), static_cast<std::int32_t>(j), x};
        for (Index k = 0; k < n; ++k) {
            if (rank[k] < 0 || k == i || k == j) continue;
            const double q = t / static_cast<double>((s[k] + 1) * u + (s[i] + s[j] + 2));
            const double ai = (s[i] + 1 + s[k] * u) * q + e, aj = (s[j] + 1 + s[k] * u) * q + e;
            const double beta = (c == 2 ? -0.25 : 0.0) - w * ai * aj - u * q * s[k];
            const double di = distance(i, k), dj = distance(j, k);
            distance(j, k) = beta * x + ai * di + aj * dj + gamma * std::fabs(di - dj);
        }
        s[j] += s[i] + 1;
        rank[i] = -1;
    }
    return success;
}
