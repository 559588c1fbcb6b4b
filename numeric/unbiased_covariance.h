#pragma once

#include "numeric/matrix.h"

// Covariances with the divisor N become those with the divisor N - 1.
void takeUnbiased(double samples, Matrix& covariance);
