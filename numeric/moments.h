#pragma once

#include <cstddef>

#include "numeric/block.h"
#include "numeric/error_code.h"

// The moments of p variables. Covariances have the divisor N, and sds are the square roots of their diagonal.
struct MomentMatrices {
    Block<double> means;       // p
    Block<double> sds;         // p
    Block<double> covariance;  // p x p
    Block<double> correlation; // p x p

    // Zero-filled arrays for p variables; 0 or outOfMemory.
    ErrorCode allocate(int p);
};

// The number of components or factors that a dialog proposes for p variables: 1 below four variables, then
// ln 2 (p - 2) / ln p, cut to a whole number.
int DefaultFactorCount(int p);

// Moments of values (samples x variables, row-major) into moments, which is allocated for as many variables.
// One pass (Welford 1962): each sample corrects the means and adds to the covariance. A constant variable has
// a correlation that is not finite, and so has a single sample; without samples every moment is 0. Returns 0.
ErrorCode MeanCovarianceCorrelation(const double* values, int samples, int variables,
                                    MomentMatrices& moments);

// A variable that deviates less than this is as good as constant: the analyses refuse it.
constexpr double leastDeviation = 0.001;

// Whether one of p standard deviations is below least; one that is not a number is not.
bool anyDeviationBelow(const double* sds, int p, double least);

// Whether count values are all finite.
bool allFinite(const double* values, std::size_t count);
