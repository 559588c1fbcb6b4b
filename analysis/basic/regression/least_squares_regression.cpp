#include "analysis/basic/regression/least_squares_regression.h"

#include <algorithm>
#include <cmath>

namespace {

// Stand-ins have means of 0.
double constantOf(const RegressionData& data, const LeastSquares& least, const RegressionFit& fit) {
    if (data.standIns == 0) return least.constant;
    double constant = data.moments.means[data.purpose()];
    for (Index j = 0; j < fit.count; ++j)
        constant -= least.coefficients[j] * data.moments.means[fit.variables[j]];
    return constant;
}

void takeCoefficients(const RegressionData& data, const LeastSquares& least, RegressionFit& fit) {
    const double freedom = data.freedom(fit.count);
    const Block<double>& sds = data.moments.sds;
    fit.constant = constantOf(data, least, fit);
    fit.residualVariance = least.residualSum / freedom;
    for (Index j = 0; j < fit.count; ++j) {
        const double b = least.coefficients[j];
        fit.coefficients[j] = b;
        fit.errors[j] = std::sqrt(least.inverse(j, j) * fit.residualVariance);
        fit.standardized[j] = b * sds[fit.variables[j]] / sds[data.purpose()];
        // t / sqrt(t^2 + degrees of freedom), also where t is infinite or not a number
        fit.partial[j] = b / std::hypot(b, std::sqrt(least.inverse(j, j) * least.residualSum));
    }
}

void computeDeterminations(const RegressionData& data, const LeastSquares& least, RegressionFit& fit) {
    const double n = data.samples, k = static_cast<double>(fit.count), freedom = data.freedom(fit.count);
    const double rest = least.residualSum / least.totalSum;
    fit.determinations[0] = std::max(0.0, 1.0 - rest); // rounding may leave more than there was
    fit.determinations[1] = 1.0 - rest * (n - 1.0) / freedom;
    fit.determinations[2] = 1.0 - rest * (n - 1.0) * (n + k + 1.0) / ((n + 1.0) * freedom);
}

void computeTests(const Numerics& numerics, const RegressionData& data, const LeastSquares& least,
                  RegressionFit& fit) {
    const Index k = fit.count;
    const double modelFreedom = static_cast<double>(k);
    for (Index j = 0; j < k; ++j) {
        const double t = fit.coefficients[j] / fit.errors[j];
        fit.fValues[j] = t * t;
        fit.freedoms[0][j] = 1.0;
    }
    const double explained = std::max(0.0, least.totalSum - least.residualSum);
    fit.fValues[k] = explained / modelFreedom / fit.residualVariance;
    fit.freedoms[0][k] = modelFreedom;
    std::fill_n(fit.freedoms[1].data(), k + 1, data.freedom(fit.count));
    numerics.fTails(k + 1, fit.fValues.data(), fit.freedoms[0].data(), fit.freedoms[1].data(),
                    fit.fProbabilities.data());
}

void computeSamples(const Numerics& numerics, const RegressionData& data, const LeastSquares& least,
                    RegressionFit& fit) {
    const double deviation = std::sqrt(fit.residualVariance);
    const double t = numerics.tTwoSidedQuantile(data.freedom(fit.count), fit.alpha);
    for (Index s = 0; s < data.predicted(); ++s) {
        const double* row = data.row(s);
        for (Index j = 0; j < fit.count; ++j) {
            fit.deviations[j] = row[fit.variables[j]] - data.moments.means[fit.variables[j]];
        }
        const double distance = distanceByRoot(fit.deviations.data(), fit.count, least.root.data());
        // The residual has digits that a sum of large terms would lose.
        fit.predictions[s] = row[data.purpose()] - least.residuals[s];
        fit.standardizedResiduals[s] = least.residuals[s] / deviation;
        fit.halfWidths[s] = intervalHalfWidth(distance, t, data.samples, fit.residualVariance);
    }
}

} // namespace

ErrorCode fitColumns(const RegressionData& data, const Index* variables, Index count, LeastSquares& least) {
    Block<std::int32_t> columns;
    const ErrorCode code = columns.allocate(count);
    if (code != success) return code;
    for (Index j = 0; j < count; ++j) columns[j] = static_cast<std::int32_t>(variables[j]);
    return fitLeastSquares({.values = data.values,
                            .samples = data.rows(),
                            .stride = data.variables,
                            .variables = columns.data(),
                            .k = count,
                            .purpose = data.purpose()},
                           least);
}

ErrorCode fitByLeastSquares(Screens& screens, const Numerics& numerics, const RegressionData& data,
                            double alpha, RegressionFit& fit) {
    LeastSquares least;
    ErrorCode code = fitColumns(data, fit.variables.data(), fit.count, least);
    if (code == success) code = screens.setProgress(40);
    if (code != success) return code;
    takeCoefficients(data, least, fit);
    computeDeterminations(data, least, fit);
    computeTests(numerics, data, least, fit);
    code = screens.setProgress(75);
    if (code != success) return code;
    fit.alpha = alpha;
    fit.hasRoot = true;
    std::copy(least.root.begin(), least.root.end(), fit.intervalMatrix.begin());
    code = screens.setProgress(90);
    if (code != success) return code;
    computeSamples(numerics, data, least, fit);
    return screens.setProgress(100);
}
