#include "analysis/basic/regression/regression.h"

#include <algorithm>
#include <cmath>

#include "numeric/distributions.h"
#include "numeric/lu.h"

namespace {

Index index(std::int32_t i) {
    return i;
}

// The inverse of the correlation matrix of the model's variables, the purpose variable last.
ErrorCode invertCorrelation(const RegressionData& data, DeterminantTest test, RegressionFit& fit) {
    const std::int32_t order = fit.count + 1;
    fit.variables[index(fit.count)] = data.variables - 1;
    copyMinor(data.moments.correlation.data(), data.variables, fit.variables.data(), order, 1.0,
              fit.matrix.data());
    double determinant = 0.0;
    const ErrorCode code = MatrixInverse(order, order, fit.matrix.data(), fit.inverse.data(), determinant);
    if (code != success) return code;
    return test == DeterminantTest::refuseNegative && determinant < 0.0 ? singularMatrix : success;
}

void computeCoefficients(const RegressionData& data, RegressionFit& fit) {
    const MomentMatrices& moments = data.moments;
    const Index k = index(fit.count);
    const double* q = fit.inverse.data();
    const double* last = q + k * (k + 1);
    fit.constant = moments.means[data.purpose()];
    for (Index j = 0; j < k; ++j) {
        const Index column = index(fit.variables[j]);
        fit.standardized[j] = -q[j * (k + 1) + k] / last[k];
        fit.coefficients[j] = fit.standardized[j] * moments.sds[data.purpose()] / moments.sds[column];
        fit.constant -= fit.coefficients[j] * moments.means[column];
        fit.partial[j] = -q[j * (k + 1) + k] / std::sqrt(last[k] * q[j * (k + 1) + j]);
    }
}

void computeDeterminations(std::int32_t samples, RegressionFit& fit) {
    const double n = samples;
    const double k = fit.count;
    const Index order = index(fit.count) + 1;
    const double determination = 1.0 - 1.0 / fit.inverse[order * order - 1];
    fit.determinations[0] = determination;
    fit.determinations[1] = ((n - 1.0) * determination - k) / (n - k - 1.0);
    fit.determinations[2] =
        ((k + 1.0 + n) * (n - 1.0) * determination - 2.0 * k * n) / ((n + 1.0) * (n - k - 1.0));
    for (const int adjusted : {1, 2}) {
        if (fit.determinations[adjusted] < 0.0) fit.determinations[adjusted] = 0.0;
    }
}

// F tests of each variable, given the others, and of the model; standard errors follow from them.
void computeTests(std::int32_t samples, RegressionFit& fit) {
    const Index k = index(fit.count);
    const double* q = fit.inverse.data();
    const double last = q[(k + 1) * (k + 1) - 1];
    const double determination = fit.determinations[0];
    const double freedom = samples - fit.count - 1;
    for (Index j = 0; j < k; ++j) {
        const double beside = q[j * (k + 1) + k];
        const double without = 1.0 - 1.0 / (last - beside * beside / q[j * (k + 1) + j]);
        fit.fValues[j] = (determination - without) * freedom / (1.0 - determination);
        const double root = std::sqrt(fit.fValues[j]);
        fit.errors[j] = root == 0.0 ? 0.0 : std::fabs(fit.coefficients[j] / root);
    }
    fit.fValues[k] = freedom * determination / ((1.0 - determination) * fit.count);

    std::fill_n(fit.freedoms[0].data(), k, 1.0);
    fit.freedoms[0][k] = fit.count;
    std::fill_n(fit.freedoms[1].data(), k + 1, freedom);
    FUpperProbability(fit.count + 1, fit.fValues.data(), fit.freedoms[0].data(), fit.freedoms[1].data(),
                      fit.fProbabilities.data());
}

ErrorCode makeIntervalMatrix(const RegressionData& data, double alpha, RegressionFit& fit) {
    fit.alpha = 0.0;
    if (alpha == 0.0) return success;
    copyMinor(data.moments.covariance.data(), data.variables, fit.variables.data(), fit.count, data.samples,
              fit.matrix.data());
    double determinant = 0.0;
    const ErrorCode code =
        MatrixInverse(fit.count, fit.count, fit.matrix.data(), fit.intervalMatrix.data(), determinant);
    if (code == success) fit.alpha = alpha;
    return code;
}

void computeSamples(const RegressionData& data, RegressionFit& fit) {
    const MomentMatrices& moments = data.moments;
    const double freedom = data.samples - fit.count - 1;
    const double deviation =
        moments.sds[data.purpose()] * std::sqrt(data.samples * (1.0 - fit.determinations[0]) / freedom);
    fit.residualVariance = deviation * deviation;
    const double t = fit.alpha == 0.0 ? 0.0 : TInverse(freedom, fit.alpha);

    const double* row = data.values;
    for (Index i = 0; i < index(data.samples); ++i, row += data.variables) {
        double prediction = fit.constant;
        for (Index j = 0; j < index(fit.count); ++j) {
            const Index column = index(fit.variables[j]);
            prediction += fit.coefficients[j] * row[column];
            fit.deviations[j] = row[column] - moments.means[column];
        }
        fit.predictions[i] = prediction;
        fit.standardizedResiduals[i] = (row[data.purpose()] - prediction) / deviation;
        if (fit.alpha != 0.0) {
            fit.halfWidths[i] = intervalHalfWidth(fit.deviations.data(), fit.count, fit.intervalMatrix.data(),
                                                  t, data.samples, fit.residualVariance);
        }
    }
}

} // namespace

ErrorCode RegressionFit::allocate(std::int32_t samples, std::int32_t allVariables) {
    const Index n = index(samples);
    const Index p = index(allVariables);
    return variables.allocate(p) | coefficients.allocate(p) | errors.allocate(p) | fValues.allocate(p) |
           fProbabilities.allocate(p) | standardized.allocate(p) | partial.allocate(p) |
           intervalMatrix.allocate(p * p) | predictions.allocate(n) | halfWidths.allocate(n) |
           standardizedResiduals.allocate(n) | matrix.allocate(p * p) | inverse.allocate(p * p) |
           freedoms[0].allocate(p) | freedoms[1].allocate(p) | deviations.allocate(p);
}

void copyMinor(const double* matrix, std::int32_t stride, const std::int32_t* variables, std::int32_t count,
               double factor, double* out) {
    for (std::int32_t i = 0; i < count; ++i) {
        const double* row = matrix + index(variables[i]) * index(stride);
        for (std::int32_t j = 0; j < count; ++j) *out++ = factor * row[variables[j]];
    }
}

double intervalHalfWidth(const double* deviations, std::int32_t count, const double* intervalMatrix, double t,
                         std::int32_t samples, double residualVariance) {
    const Index k = index(count);
    double distance = 0.0;
    for (Index i = 0; i < k; ++i) {
        double sum = 0.0;
        for (Index j = 0; j < k; ++j) sum += intervalMatrix[i * k + j] * deviations[j];
        distance += sum * deviations[i];
    }
    return t * std::sqrt((1.0 / samples + 1.0 + distance) * residualVariance);
}

ErrorCode fitRegression(Screens& screens, const RegressionData& data, double alpha, DeterminantTest test,
                        RegressionFit& fit) {
    ErrorCode code = invertCorrelation(data, test, fit);
    if (code != success) return code;
    screens.setProgress(40);
    computeCoefficients(data, fit);
    computeDeterminations(data.samples, fit);
    computeTests(data.samples, fit);
    screens.setProgress(75);
    code = makeIntervalMatrix(data, alpha, fit);
    if (code != success) return code;
    screens.setProgress(90);
    computeSamples(data, fit);
    screens.setProgress(100);
    return success;
}
