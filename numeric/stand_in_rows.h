#pragma once

#include "numeric/matrix.h"

// Rows in the place of samples that are not here: their means are 0, and the sums of their products are those
// of n samples with the covariances (p x p, divisor N) about their means. Two for each row of the triangular
// factor of the covariances (Cholesky), of opposite signs; a variable that depends on those before it up to
// rounding gets none. Into rows, which has 2 p x p elements.
void findStandInRows(const Matrix& covariance, double n, Matrix& rows);
