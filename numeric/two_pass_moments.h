#pragma once

#include "numeric/moments.h"

// Moments of values (samples x variables, row-major) as MeanCovarianceCorrelation gives them, in passes:
// means, what rounding left of the deviations from them (Chan, Golub and LeVeque 1983), and sums of products.
// Means and standard deviations are exact to some units of the last place, and the latter to that times mean
// / deviation times 1e-16 more. Correlations are at most 1, and 1 of a variable with itself. Returns 0.
ErrorCode twoPassMoments(const double* values, std::int32_t samples, std::int32_t variables,
                         MomentMatrices& moments);
