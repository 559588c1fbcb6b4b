#pragma once

#include "data/data_set.h"
#include "numeric/numerics.h"
#include "report/screens.h"

// Nine statistics of each variable, in the order of the report.
struct BasicStatistics {
    Block<double> maximum;
    Block<double> minimum;
    Block<double> mean;
    Block<double> median;
    Block<double> standardDeviation;
    Block<double> averageDeviation; // mean of |x - mean|
    Block<double> skew;
    Block<double> kurtosis; // 0 for the normal distribution
    Block<double> variance; // divisor N - 1

    Block<double> meanError; // by rounding; under classic numerics
    Block<double> column;    // scratch of each worker: one variable's samples

    // Zero-filled arrays; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index variables, Index samples, Index workers);
};

// Fills the statistics from the data, by as many workers as they were allocated for, and moves the progress
// from 0 to 70. A variable with one value only has skew and kurtosis 0, unless the rounding of the classic
// mean leaves deviations. Returns what the progress does.
[[nodiscard]] ErrorCode findBasicStatistics(Screens& screens, const Numerics& numerics,
                                            const DataMatrix& data, BasicStatistics& statistics);

// Whether the rounding of a mean shows in the skew of its variable.
bool skewDeviates(const BasicStatistics& statistics);
