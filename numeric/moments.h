#pragma once

#include <cstdint>

#include "numeric/matrix.h"

// The moments of p variables. Covariances have the divisor N, and sds are the square roots of their diagonal.
struct MomentMatrices {
    Block<double> means; // p
    Block<double> sds;   // p
    Matrix covariance;   // p x p
    Matrix correlation;  // p x p

    // Zero-filled arrays for p variables; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index p);
};

// The number of components or factors that a dialog proposes for p variables: 1 below four variables, then
// ln 2 (p - 2) / ln p, cut to a whole number.
int DefaultFactorCount(std::int32_t p);

// Moments of values (samples x variables, row-major) into moments, which is allocated for as many variables.
// One pass (Welford 1962): each sample corrects the means and adds to the covariance. A constant variable has
// a correlation that is not finite, and so has a single sample; without samples every moment is 0. Returns 0.
ErrorCode MeanCovarianceCorrelation(const double* values, std::int32_t samples, std::int32_t variables,
                                    MomentMatrices& moments);

// A variable that deviates less than this is as good as constant: the analyses refuse it.
constexpr double leastDeviation = 0.001;

// Whether a standard deviation is below least; one that is not a number is not.
bool anyDeviationBelow(const Block<double>& sds, double least);

// Whether all values are finite.
bool allFinite(const double* values, Index count);
bool allFinite(const Block<double>& values);
bool allFinite(const Matrix& values);
