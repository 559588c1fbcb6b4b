#pragma once

#include "numeric/matrix.h"

// For orders from blockedOrder on. Elements that are not finite leave the results not finite.

// symmetricEigenvalues. Returns success or outOfMemory.
[[nodiscard]] ErrorCode largeEigenvalues(Matrix& a, Block<double>& values);

// SymmetricEigen: the reduction by panels, the tridiagonal matrix by halves. Takes scratch of three such
// matrices. Returns success or outOfMemory.
[[nodiscard]] ErrorCode largeSymmetricEigen(Index n, Index stride, double* vectors, double* values,
                                            const double* source);
