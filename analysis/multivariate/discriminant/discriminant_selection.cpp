#include "analysis/multivariate/discriminant/discriminant_selection.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "numeric/distributions.h"

namespace {

// What the entered variables leave of a variable; below it the variable depends on them.
constexpr double leastTolerance = 1e-10;

struct Candidate {
    Index position; // in the order; its size when there is none
    double f;
};

// `all` are the within-group sums before anything entered.
Candidate findLargestF(Index entered, double ratio, const double* total, const double* within,
                       const double* all, const Block<std::int32_t>& order) {
    const Index q = order.size();
    Candidate best = {q, 0.0};
    for (Index position = entered; position < q; ++position) {
        const Index diagonal = Index{order[position]} * (q + 1);
        if (within[diagonal] < leastTolerance * all[diagonal]) continue;
        const double f = (total[diagonal] / within[diagonal] - 1.0) * ratio;
        if (std::isnan(f) || (best.position < q && f <= best.f)) continue;
        best = {position, f};
    }
    return best;
}

// Takes the part that variable j explains out of the sums of the variables that have not entered.
void sweep(Index j, Index entered, const Block<std::int32_t>& order, double* sums) {
    const Index q = order.size();
    const double* pivot = sums + j * q;
    for (Index at = entered; at < q; ++at) {
        double* row = sums + Index{order[at]} * q;
        const double factor = row[j] / pivot[j];
        for (Index other = entered; other < q; ++other) {
            const Index b = order[other];
            row[b] -= factor * pivot[b];
        }
    }
}

} // namespace

ErrorCode VariableSelection::allocate(int variables) {
    const Index q = variables;
    selected = variables;
    const ErrorCode code = order.allocate(q) | f.allocate(q) | probability.allocate(q) |
                           firstDegrees.allocate(q) | secondDegrees.allocate(q);
    if (code == success) std::iota(order.begin(), order.end(), 0);
    return code;
}

ErrorCode selectForward(const GroupStatistics& statistics, double fIn, double fInProbability,
                        VariableSelection& selection) {
    Block<double> total, within;
    const ErrorCode code =
        total.allocate(statistics.total.size()) | within.allocate(statistics.within.size());
    if (code != success) return code;
    std::copy(statistics.total.begin(), statistics.total.end(), total.begin());
    std::copy(statistics.within.begin(), statistics.within.end(), within.begin());

    Index entered = 0;
    const double first = statistics.groups - 1;
    while (entered < selection.order.size()) {
        const double second = statistics.samples - statistics.groups - static_cast<double>(entered);
        const Candidate best = findLargestF(entered, second / first, total.data(), within.data(),
                                            statistics.within.data(), selection.order);
        if (best.position == selection.order.size()) break;
        double probability = 0.0;
        FUpperProbability(1, &best.f, &first, &second, &probability);
        if (best.f < fIn || probability > fInProbability) break;

        std::swap(selection.order[entered], selection.order[best.position]);
        selection.f[entered] = best.f;
        selection.probability[entered] = probability;
        selection.firstDegrees[entered] = first;
        selection.secondDegrees[entered] = second;
        const Index j = selection.order[entered++];
        sweep(j, entered, selection.order, total.data());
        sweep(j, entered, selection.order, within.data());
    }
    selection.selected = static_cast<int>(entered);
    return success;
}
