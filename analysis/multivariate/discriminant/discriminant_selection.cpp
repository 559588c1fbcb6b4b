#include "analysis/multivariate/discriminant/discriminant_selection.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace {

// What the entered variables leave of a variable; below it the variable depends on them.
constexpr double leastTolerance = 1e-10;

struct Candidate {
    Index position; // in the order; its size when there is none
    double f;
};

// `all` are the within-group sums before anything entered.
Candidate findLargestF(Index entered, double ratio, const Matrix& total, const Matrix& within,
                       const Matrix& all, const Block<std::int32_t>& order) {
    Candidate best = {order.size(), 0.0};
    for (Index position = entered; position < order.size(); ++position) {
        const Index j = order[position];
        if (within(j, j) < leastTolerance * all(j, j)) continue;
        const double f = (total(j, j) / within(j, j) - 1.0) * ratio;
        if (std::isnan(f) || (best.position < order.size() && f <= best.f)) continue;
        best = {position, f};
    }
    return best;
}

// Takes the part that variable j explains out of the sums of the variables that have not entered.
void sweep(Index j, Index entered, const Block<std::int32_t>& order, Matrix& sums) {
    const Index q = order.size();
    const double* pivot = sums.row(j);
    for (Index position = entered; position < q; ++position) {
        double* row = sums.row(order[position]);
        const double factor = row[j] / pivot[j];
        for (Index other = entered; other < q; ++other) {
            const Index k = order[other];
            row[k] -= factor * pivot[k];
        }
    }
}

} // namespace

ErrorCode VariableSelection::allocate(Index variables) {
    selected = variables;
    const ErrorCode code = order.allocate(variables) | f.allocate(variables) |
                           probability.allocate(variables) | firstDegrees.allocate(variables) |
                           secondDegrees.allocate(variables);
    if (code == success) std::iota(order.begin(), order.end(), 0);
    return code;
}

ErrorCode selectForward(const GroupStatistics& statistics, const Numerics& numerics, double fIn,
                        double fInProbability, VariableSelection& selection, const Stage& stage) {
    const Index q = statistics.variables;
    Matrix total, within;
    ErrorCode code = total.allocate(q, q) | within.allocate(q, q);
    if (code != success) return code;
    std::copy(statistics.total.begin(), statistics.total.end(), total.begin());
    std::copy(statistics.within.begin(), statistics.within.end(), within.begin());

    Index entered = 0;
    const double first = static_cast<double>(statistics.groups - 1);
    while (entered < q) {
        code = stage.advance(entered, q);
        if (code != success) return code;
        const double second = statistics.withinDegrees() - static_cast<double>(entered);
        const Candidate best =
            findLargestF(entered, second / first, total, within, statistics.within, selection.order);
        if (best.position == q) break;
        double probability = 0.0;
        numerics.fTails(1, &best.f, &first, &second, &probability);
        selection.f[entered] = best.f;
        selection.probability[entered] = probability;
        selection.firstDegrees[entered] = first;
        selection.secondDegrees[entered] = second;
        selection.tested = entered + 1;
        if (best.f < fIn || probability > fInProbability) break;

        std::swap(selection.order[entered], selection.order[best.position]);
        const Index j = selection.order[entered++];
        sweep(j, entered, selection.order, total);
        sweep(j, entered, selection.order, within);
    }
    selection.selected = entered;
    return success;
}
