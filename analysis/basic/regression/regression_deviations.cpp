#include "analysis/basic/regression/regression_deviations.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/run/run_report.h"
#include "analysis/run/textbook_deviation.h"

namespace {

// By a share of the value itself, however small that is.
bool differ(double value, double exact) {
    return !(std::fabs(value - exact) <= shownDeviation * std::fabs(exact));
}

// What rounding may do to the results, as a share of them. The diagonal of the inverse holds the variance
// inflation of each variable and, of the purpose variable, 1 / (1 - R2); moments lose what a mean is larger
// than its deviation.
double roundingOf(const RegressionData& data, const RegressionFit& fit) {
    double inflation = 1.0, shift = 1.0;
    for (Index j = 0; j <= fit.count; ++j) {
        const Index column = fit.variables[j];
        const double share = std::fabs(data.moments.means[column]) / data.moments.sds[column];
        shift = std::fmax(shift, share);
        // What is not a number counts as without bounds.
        inflation = fit.inverse(j, j) >= 0.0 ? std::max(inflation, fit.inverse(j, j))
                                             : std::numeric_limits<double>::infinity();
    }
    return std::numeric_limits<double>::epsilon() * inflation * shift;
}

// Standard errors from the inverse instead of from F, which is a small difference where it is near 0.
bool errorsDiffer(const RegressionData& data, const RegressionFit& fit) {
    const Index k = fit.count;
    const double last = fit.inverse(k, k), freedom = data.freedom(k);
    for (Index j = 0; j < k; ++j) {
        const double beside = fit.inverse(j, k);
        const double others = fit.inverse(j, j) - beside * beside / last; // without the purpose variable
        const double exact = data.moments.sds[data.purpose()] / data.moments.sds[fit.variables[j]] *
                             std::sqrt(others / last / freedom);
        if (differ(fit.errors[j], exact)) return true;
    }
    return false;
}

} // namespace

void noteRegressionDeviations(AnalysisRun& run, const RegressionData& data, const RegressionFit& fit) {
    if (run.numerics->textbook) return;
    if (!(roundingOf(data, fit) <= shownDeviation)) {
        noteDeviation(run, "coefficients, s.error and f.value of a nearly singular regression");
    } else if (errorsDiffer(data, fit)) {
        noteDeviation(run, "s.error");
    }
    const double n = data.samples, k = static_cast<double>(fit.count);
    // The re-adjusted one is the first of the two to fall below 0, where both end.
    if (fit.determinations[0] * (n - 1.0) * (n + k + 1.0) < 2.0 * k * n) {
        noteDeviation(run, "adjusted m.c.determination");
    }
    if (fTailsDeviate(fit.count + 1, fit.fValues.data(), fit.freedoms[0].data(), fit.freedoms[1].data(),
                      fit.fProbabilities.data())) {
        noteDeviation(run, "f.probability");
    }
}
