#include <cstdio>
#include <random>

#include "bench/bench.h"
#include "numeric/matrix.h"
#include "tests/analysis/multivariate/cluster/plain_merging.h"

namespace {

// Squared distances of points with few values, so that many are equal, or with many.
bool fillDistances(ClusterMerging& merging, unsigned values) {
    constexpr Index items = 2000, dimensions = 5;
    if (merging.allocate(items) != success) return false;
    std::mt19937 random(3);
    Matrix points;
    if (points.allocate(items, dimensions) != success) return false;
    for (double& x : points) x = static_cast<double>(random() % values);
    for (Index a = 0; a < items; ++a) {
        for (Index b = a + 1; b < items; ++b) {
            double sum = 0.0;
            for (Index k = 0; k < dimensions; ++k) {
                const double difference = points(a, k) - points(b, k);
                sum += difference * difference;
            }
            merging.distances[merging.rowStart(a) + b] = sum;
        }
    }
    return true;
}

} // namespace

void benchMerging() {
    for (const unsigned values : {5U, 1000000U}) {
        for (int criterion = 0; criterion < 6; ++criterion) {
            ClusterMerging fast, plain;
            if (!fillDistances(fast, values) || !fillDistances(plain, values)) return;
            const auto start = std::chrono::steady_clock::now();
            if (mergeClusters(criterion, fast) != success) return;
            const double seconds = secondsSince(start);
            const auto plainStart = std::chrono::steady_clock::now();
            if (mergePlainly(criterion, plain) != success) return;
            const double plainSeconds = secondsSince(plainStart);
            int different = 0;
            for (Index step = 0; step < fast.merges.size(); ++step) {
                different += fast.merges[step].first != plain.merges[step].first ||
                             fast.merges[step].second != plain.merges[step].second ||
                             fast.merges[step].level != plain.merges[step].level;
            }
            std::printf(
                "merging 2000 items, %s, criterion %d: %.3f s, plain loop %.3f s, %.0f times as long; "
                "%d of 1999 merges differ\n",
                values < 10 ? "many ties" : "few ties ", criterion, seconds, plainSeconds,
                plainSeconds / seconds, different);
        }
    }
}
