#include "analysis/basic/descriptive/basic_statistics.h"

#include <algorithm>
#include <cmath>

namespace {

// The middle value, or the mean of the two in the middle. Reorders the values.
double medianOf(double* values, Index count) {
    double* const middle = values + count / 2;
    std::nth_element(values, middle, values + count);
    if (count % 2 == 1) return *middle;
    return 0.5 * (*std::max_element(values, middle) + *middle);
}

// A value replaces the first one only when it is strictly beyond it.
void findExtremes(const double* values, Index count, double& maximum, double& minimum) {
    maximum = minimum = values[0];
    for (Index s = 1; s < count; ++s) {
        if (values[s] > maximum) maximum = values[s];
        if (values[s] < minimum) minimum = values[s];
    }
}

void findMoments(const double* values, Index count, BasicStatistics& statistics, Index j) {
    const double n = static_cast<double>(count);
    double sum = 0.0;
    for (Index s = 0; s < count; ++s) sum += values[s];
    const double mean = sum / n;

    double absolute = 0.0, second = 0.0, third = 0.0, fourth = 0.0;
    for (Index s = 0; s < count; ++s) {
        const double deviation = values[s] - mean;
        const double square = deviation * deviation;
        absolute += std::fabs(deviation);
        second += square;
        third += square * deviation;
        fourth += square * square;
    }
    const double variance = second / (n - 1.0);
    const double standardDeviation = std::sqrt(variance);
    statistics.mean[j] = mean;
    statistics.averageDeviation[j] = absolute / n;
    statistics.variance[j] = variance;
    statistics.standardDeviation[j] = standardDeviation;
    if (variance != 0.0) {
        statistics.skew[j] = third / (n * variance * standardDeviation);
        statistics.kurtosis[j] = fourth / (n * variance * variance) - 3.0;
    }
}

} // namespace

ErrorCode BasicStatistics::allocate(Index variables, Index samples) {
    return maximum.allocate(variables) | minimum.allocate(variables) | mean.allocate(variables) |
           median.allocate(variables) | standardDeviation.allocate(variables) |
           averageDeviation.allocate(variables) | skew.allocate(variables) | kurtosis.allocate(variables) |
           variance.allocate(variables) | column.allocate(samples);
}

ErrorCode findBasicStatistics(Screens& screens, const DataMatrix& data, BasicStatistics& statistics) {
    const Index variables = data.variables;
    const Index samples = data.samples;
    if (samples == 0) return success;

    double* const column = statistics.column.data();
    for (Index j = 0; j < variables; ++j) {
        for (Index s = 0; s < samples; ++s) column[s] = data.at(s, j);
        findExtremes(column, samples, statistics.maximum[j], statistics.minimum[j]);
        findMoments(column, samples, statistics, j);
        const bool varies = statistics.maximum[j] > statistics.minimum[j];
        statistics.median[j] = varies ? medianOf(column, samples) : statistics.maximum[j];
        const ErrorCode code = screens.setProgress(static_cast<int>(70 * (j + 1) / variables));
        if (code != success) return code;
    }
    return success;
}
