#include "numeric/moments.h"

#include <algorithm>
#include <cmath>

namespace {

// Adds sample number k (from 0) to the means of the k samples before it and to the lower triangle of the sums
// of products. Reports depend on this order of the operations.
void addSample(const double* x, int k, std::size_t p, double* means, double* sums) {
    const double before = k;
    const double after = before + 1.0;
    for (std::size_t i = 0; i < p; ++i) {
        means[i] = (before * means[i] + x[i]) / after;
        const double deviation = x[i] - means[i];
        double* row = sums + i * p;
        for (std::size_t j = 0; j <= i; ++j) row[j] += (x[j] - means[j]) * after * deviation / before;
    }
}

} // namespace

ErrorCode MomentMatrices::allocate(int p) {
    const auto count = static_cast<std::size_t>(p);
    return means.allocate(count) | sds.allocate(count) | covariance.allocate(count * count) |
           correlation.allocate(count * count);
}

int DefaultFactorCount(int p) {
    if (p < 4) return 1;
    return static_cast<int>(std::log(2.0) * (p - 2) / std::log(static_cast<double>(p)));
}

ErrorCode MeanCovarianceCorrelation(const double* values, int samples, int variables,
                                    MomentMatrices& moments) {
    const auto p = static_cast<std::size_t>(variables);
    double* means = moments.means.data();
    double* sds = moments.sds.data();
    double* covariance = moments.covariance.data();
    double* correlation = moments.correlation.data();
    std::fill_n(covariance, p * p, 0.0);
    if (samples < 1) {
        std::fill_n(means, p, 0.0);
        std::fill_n(sds, p, 0.0);
        std::fill_n(correlation, p * p, 0.0);
        return success;
    }
    std::copy_n(values, p, means);
    for (int k = 1; k < samples; ++k)
        addSample(values + static_cast<std::size_t>(k) * p, k, p, means, covariance);
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            covariance[i * p + j] /= samples;
            covariance[j * p + i] = covariance[i * p + j];
        }
        sds[i] = std::sqrt(covariance[i * p + i]);
        for (std::size_t j = 0; j <= i; ++j) {
            correlation[i * p + j] = covariance[i * p + j] / sds[i] / sds[j];
            correlation[j * p + i] = correlation[i * p + j];
        }
    }
    return success;
}

bool anyDeviationBelow(const double* sds, int p, double least) {
    return std::any_of(sds, sds + p, [least](double deviation) { return deviation < least; });
}

bool allFinite(const double* values, std::size_t count) {
    return std::all_of(values, values + count, [](double value) { return std::isfinite(value); });
}
