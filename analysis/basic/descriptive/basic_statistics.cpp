#include "analysis/basic/descriptive/basic_statistics.h"

#include <algorithm>
#include <cmath>

#include "analysis/run/textbook_deviation.h"

namespace {

// The middle value, or the mean of the two in the middle. Reorders the values.
double medianOf(double* values, Index count) {
    double* const middle = values + count / 2;
    std::nth_element(values, middle, values + count);
    if (count % 2 == 1) return *middle;
    return 0.5 * (*std::max_element(values, middle) + *middle);
}

void copyColumn(const DataMatrix& data, Index j, double* column) {
    for (Index s = 0; s < data.samples; ++s) column[s] = data.at(s, j);
}

// A value replaces the first one only when it is strictly beyond it.
void findExtremes(const double* values, Index count, double& maximum, double& minimum) {
    maximum = minimum = values[0];
    for (Index s = 1; s < count; ++s) {
        if (values[s] > maximum) maximum = values[s];
        if (values[s] < minimum) minimum = values[s];
    }
}

struct Centre {
    double mean;
    double rest; // what its rounding leaves of the mean deviation
};

double meanDeviation(const double* values, Index count, double from) {
    double sum = 0.0;
    for (Index s = 0; s < count; ++s) sum += values[s] - from;
    return sum / static_cast<double>(count);
}

Centre classicCentre(const double* values, Index count) {
    return {meanDeviation(values, count, 0.0), 0.0};
}

// The mean corrected by the mean deviation from it (Chan, Golub and LeVeque 1983).
Centre textbookCentre(const double* values, Index count) {
    double mean = meanDeviation(values, count, 0.0);
    if (!std::isfinite(mean)) return {mean, 0.0};
    mean += meanDeviation(values, count, mean);
    return {mean, meanDeviation(values, count, mean)};
}

void findMoments(const double* values, Index count, const Centre& centre, BasicStatistics& statistics,
                 Index j) {
    const double n = static_cast<double>(count);
    double absolute = 0.0, second = 0.0, third = 0.0, fourth = 0.0;
    for (Index s = 0; s < count; ++s) {
        const double deviation = values[s] - centre.mean - centre.rest;
        const double square = deviation * deviation;
        absolute += std::fabs(deviation);
        second += square;
        third += square * deviation;
        fourth += square * square;
    }
    const double variance = second / (n - 1.0);
    const double standardDeviation = std::sqrt(variance);
    statistics.mean[j] = centre.mean;
    statistics.averageDeviation[j] = absolute / n;
    statistics.variance[j] = variance;
    statistics.standardDeviation[j] = standardDeviation;
    if (variance != 0.0) {
        statistics.skew[j] = third / (n * variance * standardDeviation);
        statistics.kurtosis[j] = fourth / (n * variance * variance) - 3.0;
    }
}

void findStatistics(const Numerics& numerics, const DataMatrix& data, Index j, double* column,
                    BasicStatistics& statistics) {
    const Index samples = data.samples;
    copyColumn(data, j, column);
    findExtremes(column, samples, statistics.maximum[j], statistics.minimum[j]);
    const Centre exact = textbookCentre(column, samples);
    const Centre centre = numerics.textbook ? exact : classicCentre(column, samples);
    statistics.meanError[j] = std::fabs(centre.mean - exact.mean - exact.rest);
    findMoments(column, samples, centre, statistics, j);
    const bool varies = statistics.maximum[j] > statistics.minimum[j];
    statistics.median[j] = varies ? medianOf(column, samples) : statistics.maximum[j];
}

} // namespace

ErrorCode BasicStatistics::allocate(Index variables, Index samples, Index workers) {
    return maximum.allocate(variables) | minimum.allocate(variables) | mean.allocate(variables) |
           median.allocate(variables) | standardDeviation.allocate(variables) |
           averageDeviation.allocate(variables) | skew.allocate(variables) | kurtosis.allocate(variables) |
           variance.allocate(variables) | meanError.allocate(variables) | column.allocate(workers * samples);
}

ErrorCode findBasicStatistics(Screens& screens, const Numerics& numerics, const DataMatrix& data,
                              BasicStatistics& statistics) {
    const Index variables = data.variables;
    const Index samples = data.samples;
    if (samples == 0) return success;

    return computeParts(
        screens, variables, statistics.column.size() / samples,
        [&](Index j, Index worker) {
            findStatistics(numerics, data, j, statistics.column.data() + worker * samples, statistics);
        },
        [&](Index j) { return screens.setProgress(static_cast<int>(70 * (j + 1) / variables)); });
}

bool skewDeviates(const BasicStatistics& statistics) {
    for (Index j = 0; j < statistics.mean.size(); ++j) {
        // To first order, the skew changes by three times the error over the standard deviation.
        if (3.0 * statistics.meanError[j] > shownDeviation * statistics.standardDeviation[j]) return true;
    }
    return false;
}
