#include "numeric/two_pass_moments.h"

#include <algorithm>
#include <cmath>

namespace {

// The sum of value - shift over the rows of each column, over their number, added to shift.
void shiftMeans(const double* values, Index samples, Index variables, double* shift, double* sums) {
    std::fill_n(sums, variables, 0.0);
    for (Index s = 0; s < samples; ++s, values += variables)
        for (Index v = 0; v < variables; ++v) sums[v] += values[v] - shift[v];
    for (Index v = 0; v < variables; ++v) shift[v] += sums[v] / static_cast<double>(samples);
}

} // namespace

ErrorCode twoPassMoments(const double* values, std::int32_t samples, std::int32_t variables,
                         MomentMatrices& moments) {
    const Index p = variables;
    Matrix& covariance = moments.covariance;
    Matrix& correlation = moments.correlation;
    double* means = moments.means.data();
    double* row = moments.sds.data();  // scratch, of sums and of the deviations of a sample
    double* left = correlation.data(); // scratch, of what rounding leaves of the sums of deviations
    covariance.fill(0.0);
    correlation.fill(0.0);
    std::fill_n(means, p, 0.0);
    std::fill_n(row, p, 0.0);
    if (samples < 1) return success;

    shiftMeans(values, samples, p, means, row);
    shiftMeans(values, samples, p, means, row);
    const double* sample = values;
    for (std::int32_t s = 0; s < samples; ++s, sample += p) {
        for (Index i = 0; i < p; ++i) {
            row[i] = sample[i] - means[i];
            left[i] += row[i];
        }
        for (Index i = 0; i < p; ++i) {
            double* sums = covariance.row(i);
            for (Index j = 0; j <= i; ++j) sums[j] += row[i] * row[j];
        }
    }
    for (Index i = 0; i < p; ++i) {
        for (Index j = 0; j <= i; ++j) {
            const double value = (covariance(i, j) - left[i] * left[j] / samples) / samples;
            covariance(j, i) = covariance(i, j) = i == j ? std::max(value, 0.0) : value;
        }
    }
    for (Index i = 0; i < p; ++i) {
        moments.sds[i] = std::sqrt(covariance(i, i));
        for (Index j = 0; j < i; ++j) {
            const double cosine = covariance(i, j) / moments.sds[i] / moments.sds[j];
            correlation(i, j) = correlation(j, i) = std::clamp(cosine, -1.0, 1.0);
        }
        correlation(i, i) = covariance(i, i) / covariance(i, i); // not a number where it does not vary
    }
    return success;
}
