#include "analysis/basic/regression/regression.h"

#include <algorithm>
#include <cmath>

#include "numeric/distributions.h"
#include "numeric/lu.h"

namespace {

ErrorCode invertCorrelation(const RegressionData& data, DeterminantTest test, RegressionFit& fit) {
    fit.variables[fit.count] = data.purpose();
    copyMinor(data.moments.correlation, fit.variables.data(), fit.count + 1, 1.0, fit.correlation.data(),
              fit.correlation.columns());
    double determinant = 0.0;
    const ErrorCode code = MatrixInverse(fit.correlation, fit.inverse, determinant);
    if (code != success) return code;
    return test == DeterminantTest::refuseNegative && determinant < 0.0 ? singularMatrix : success;
}

void computeCoefficients(const RegressionData& data, RegressionFit& fit) {
    const MomentMatrices& moments = data.moments;
    const Index k = fit.count;
    const double last = fit.inverse(k, k);
    fit.constant = moments.means[data.purpose()];
    for (Index j = 0; j < k; ++j) {
        const Index column = fit.variables[j];
        const double beside = fit.inverse(j, k);
        fit.standardized[j] = -beside / last;
        fit.coefficients[j] = fit.standardized[j] * moments.sds[data.purpose()] / moments.sds[column];
        fit.constant -= fit.coefficients[j] * moments.means[column];
        fit.partial[j] = -beside / std::sqrt(last * fit.inverse(j, j));
    }
}

void computeDeterminations(const RegressionData& data, RegressionFit& fit) {
    const double n = data.samples;
    const double k = static_cast<double>(fit.count);
    const double determination = 1.0 - 1.0 / fit.inverse(fit.count, fit.count);
    fit.determinations[0] = determination;
    fit.determinations[1] = ((n - 1.0) * determination - k) / (n - k - 1.0);
    fit.determinations[2] =
        ((k + 1.0 + n) * (n - 1.0) * determination - 2.0 * k * n) / ((n + 1.0) * (n - k - 1.0));
    for (const int adjusted : {1, 2}) {
        if (fit.determinations[adjusted] < 0.0) fit.determinations[adjusted] = 0.0;
    }
}

// F tests of each variable, given the others, and of the model; standard errors follow from them.
void computeTests(const RegressionData& data, RegressionFit& fit) {
    const Index k = fit.count;
    const double modelFreedom = static_cast<double>(k);
    const double freedom = data.freedom(fit.count);
    const double last = fit.inverse(k, k);
    const double determination = fit.determinations[0];
    for (Index j = 0; j < k; ++j) {
        const double beside = fit.inverse(j, k);
        const double without = 1.0 - 1.0 / (last - beside * beside / fit.inverse(j, j));
        fit.fValues[j] = (determination - without) * freedom / (1.0 - determination);
        const double root = std::sqrt(fit.fValues[j]);
        fit.errors[j] = root == 0.0 ? 0.0 : std::fabs(fit.coefficients[j] / root);
    }
    fit.fValues[k] = freedom * determination / ((1.0 - determination) * modelFreedom);

    std::fill_n(fit.freedoms[0].data(), k, 1.0);
    fit.freedoms[0][k] = modelFreedom;
    std::fill_n(fit.freedoms[1].data(), k + 1, freedom);
    FUpperProbability(k + 1, fit.fValues.data(), fit.freedoms[0].data(), fit.freedoms[1].data(),
                      fit.fProbabilities.data());
}

ErrorCode makeIntervalMatrix(const RegressionData& data, double alpha, RegressionFit& fit) {
    fit.alpha = 0.0;
    if (alpha == 0.0) return success;
    copyMinor(data.moments.covariance, fit.variables.data(), fit.count, data.samples, fit.products.data(),
              fit.products.columns());
    double determinant = 0.0;
    const ErrorCode code = MatrixInverse(fit.products, fit.intervalMatrix, determinant);
    if (code == success) fit.alpha = alpha;
    return code;
}

void computeSamples(const RegressionData& data, RegressionFit& fit) {
    const MomentMatrices& moments = data.moments;
    const double freedom = data.freedom(fit.count);
    const double deviation =
        moments.sds[data.purpose()] * std::sqrt(data.samples * (1.0 - fit.determinations[0]) / freedom);
    fit.residualVariance = deviation * deviation;
    const double t = fit.alpha == 0.0 ? 0.0 : TInverse(freedom, fit.alpha);

    for (Index s = 0; s < data.predicted(); ++s) {
        const double* row = data.row(s);
        double prediction = fit.constant;
        for (Index j = 0; j < fit.count; ++j) {
            const Index column = fit.variables[j];
            prediction += fit.coefficients[j] * row[column];
            fit.deviations[j] = row[column] - moments.means[column];
        }
        fit.predictions[s] = prediction;
        fit.standardizedResiduals[s] = (row[data.purpose()] - prediction) / deviation;
        if (fit.alpha != 0.0) {
            const double distance =
                distanceByInverse(fit.deviations.data(), fit.count, fit.intervalMatrix.data());
            fit.halfWidths[s] = intervalHalfWidth(distance, t, data.samples, fit.residualVariance);
        }
    }
}

} // namespace

ErrorCode RegressionFit::allocate(Index samples, Index modelCount) {
    const Index n = samples;
    const Index k = count = modelCount;
    return variables.allocate(k + 1) | coefficients.allocate(k) | errors.allocate(k) |
           fValues.allocate(k + 1) | fProbabilities.allocate(k + 1) | standardized.allocate(k) |
           partial.allocate(k) | intervalMatrix.allocate(k, k) | predictions.allocate(n) |
           halfWidths.allocate(n) | standardizedResiduals.allocate(n) | correlation.allocate(k + 1, k + 1) |
           inverse.allocate(k + 1, k + 1) | products.allocate(k, k) | freedoms[0].allocate(k + 1) |
           freedoms[1].allocate(k + 1) | deviations.allocate(k);
}

void copyMinor(const Matrix& matrix, const Index* variables, Index count, double factor, double* out,
               Index stride) {
    for (Index i = 0; i < count; ++i, out += stride) {
        const double* row = matrix.row(variables[i]);
        for (Index j = 0; j < count; ++j) out[j] = factor * row[variables[j]];
    }
}

double distanceByInverse(const double* deviations, Index count, const double* inverse) {
    double distance = 0.0;
    const double* row = inverse;
    for (Index i = 0; i < count; ++i, row += count) {
        double sum = 0.0;
        for (Index j = 0; j < count; ++j) sum += row[j] * deviations[j];
        distance += sum * deviations[i];
    }
    return distance;
}

double distanceByRoot(const double* deviations, Index count, const double* root) {
    double distance = 0.0;
    const double* row = root;
    for (Index i = 0; i < count; ++i, row += count) {
        double sum = 0.0;
        for (Index j = 0; j < count; ++j) sum += row[j] * deviations[j];
        distance += sum * sum;
    }
    return distance;
}

double intervalHalfWidth(double distance, double t, std::int32_t samples, double residualVariance) {
    return t * std::sqrt((1.0 / samples + 1.0 + distance) * residualVariance);
}

ErrorCode fitByCorrelations(Screens& screens, const RegressionData& data, double alpha, DeterminantTest test,
                            RegressionFit& fit) {
    ErrorCode code = invertCorrelation(data, test, fit);
    if (code == success) code = screens.setProgress(40);
    if (code != success) return code;
    computeCoefficients(data, fit);
    computeDeterminations(data, fit);
    computeTests(data, fit);
    code = screens.setProgress(75);
    if (code == success) code = makeIntervalMatrix(data, alpha, fit);
    if (code == success) code = screens.setProgress(90);
    if (code != success) return code;
    computeSamples(data, fit);
    return screens.setProgress(100);
}
