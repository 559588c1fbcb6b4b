#pragma once

#include "numeric/matrix.h"

// What makes of a variance with the divisor N that with the divisor N - 1.
constexpr double unbiasedScale(double samples) {
    return samples / (samples - 1.0);
}

// Covariances with the divisor N become those with the divisor N - 1.
void takeUnbiased(double samples, Matrix& covariance);
