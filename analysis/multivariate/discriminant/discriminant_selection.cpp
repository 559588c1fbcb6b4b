#include "analysis/multivariate/discriminant/discriminant_selection.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "numeric/sweep.h"

namespace {

// What the entered variables leave of a variable; below it the variable depends on them.
constexpr double leastTolerance = 1e-10;

struct Candidate {
    Index position; // in the order; its size when there is none
    double f;
};

// The rows and columns of total and within stand in the order; `all` are the within-group sums before
// anything entered, in that of the columns.
Candidate findLargestF(Index entered, double ratio, const Matrix& total, const Matrix& within,
                       const Matrix& all, const Block<std::int32_t>& order) {
    Candidate best = {order.size(), 0.0};
    for (Index position = entered; position < order.size(); ++position) {
        const Index j = order[position];
        const double left = within(position, position);
        if (left < leastTolerance * all(j, j)) continue;
        const double f = (total(position, position) / left - 1.0) * ratio;
        if (std::isnan(f) || (best.position < order.size() && f <= best.f)) continue;
        best = {position, f};
    }
    return best;
}

// Exchanges two rows, and the columns of the same numbers.
void exchange(Matrix& sums, Index a, Index b) {
    if (a == b) return;
    std::swap_ranges(sums.row(a), sums.row(a) + sums.columns(), sums.row(b));
    for (Index i = 0; i < sums.rows(); ++i) std::swap(sums(i, a), sums(i, b));
}

} // namespace

ErrorCode VariableSelection::allocate(Index variables) {
    selected = variables;
    const ErrorCode code = order.allocate(variables) | f.allocate(variables) |
                           probability.allocate(variables) | firstFreedom.allocate(variables) |
                           secondFreedom.allocate(variables);
    if (code == success) std::iota(order.begin(), order.end(), 0);
    return code;
}

ErrorCode selectForward(const Numerics& numerics, const GroupStatistics& statistics, double fIn,
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
        const double second = statistics.withinFreedom() - static_cast<double>(entered);
        const Candidate best =
            findLargestF(entered, second / first, total, within, statistics.within, selection.order);
        if (best.position == q) break;
        double probability = 0.0;
        numerics.fTails(1, &best.f, &first, &second, &probability);
        selection.f[entered] = best.f;
        selection.probability[entered] = probability;
        selection.firstFreedom[entered] = first;
        selection.secondFreedom[entered] = second;
        selection.tested = entered + 1;
        if (best.f < fIn || probability > fInProbability) break;

        std::swap(selection.order[entered], selection.order[best.position]);
        for (Matrix* sums : {&total, &within}) {
            exchange(*sums, entered, best.position);
            sweepOut(*sums, entered, entered + 1);
        }
        ++entered;
    }
    selection.selected = entered;
    return success;
}
