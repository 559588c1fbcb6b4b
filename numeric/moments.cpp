#include "numeric/moments.h"

#include <algorithm>
#include <cmath>

namespace {

// Adds sample number k (from 0) to the means of the k samples before it and to the lower triangle of the sums
// of products. Another order of the operations would round otherwise and change the last digits of reports.
void addSample(const double* x, Index k, Index p, double* means, Matrix& sums) {
    const auto before = static_cast<double>(k);
    const double after = before + 1.0;
    for (Index i = 0; i < p; ++i) {
        means[i] = (before * means[i] + x[i]) / after;
        const double deviation = x[i] - means[i];
        double* row = sums.row(i);
        for (Index j = 0; j <= i; ++j) row[j] += (x[j] - means[j]) * after * deviation / before;
    }
}

} // namespace

ErrorCode MomentMatrices::allocate(Index p) {
    return means.allocate(p) | sds.allocate(p) | covariance.allocate(p, p) | correlation.allocate(p, p);
}

int DefaultFactorCount(std::int32_t p) {
    if (p < 4) return 1;
    return static_cast<int>(std::log(2.0) * (p - 2) / std::log(p));
}

ErrorCode MeanCovarianceCorrelation(const double* values, std::int32_t samples, std::int32_t variables,
                                    MomentMatrices& moments) {
    const Index p = variables;
    double* means = moments.means.data();
    double* sds = moments.sds.data();
    Matrix& covariance = moments.covariance;
    Matrix& correlation = moments.correlation;
    covariance.fill(0.0);
    if (samples < 1) {
        std::fill_n(means, p, 0.0);
        std::fill_n(sds, p, 0.0);
        correlation.fill(0.0);
        return success;
    }
    std::copy_n(values, p, means);
    for (Index k = 1; k < samples; ++k) addSample(values + k * p, k, p, means, covariance);
    for (Index i = 0; i < p; ++i) {
        for (Index j = 0; j <= i; ++j) {
            covariance(i, j) /= samples;
            covariance(j, i) = covariance(i, j);
        }
        sds[i] = std::sqrt(covariance(i, i));
        for (Index j = 0; j <= i; ++j) {
            correlation(i, j) = covariance(i, j) / sds[i] / sds[j];
            correlation(j, i) = correlation(i, j);
        }
    }
    return success;
}

bool anyDeviationBelow(const Block<double>& sds, double least) {
    return std::any_of(sds.begin(), sds.end(), [least](double deviation) { return deviation < least; });
}

bool allFinite(const double* values, Index count) {
    return std::all_of(values, values + count, [](double value) { return std::isfinite(value); });
}

bool allFinite(const Block<double>& values) {
    return allFinite(values.data(), values.size());
}

bool allFinite(const Matrix& values) {
    return allFinite(values.data(), values.size());
}
