#pragma once

#include "numeric/matrix.h"

// Products of matrices of fitting sizes; out must not be an input.

// out (rows x columns) = a (rows x inner) b (inner x columns).
void multiply(const Matrix& a, const Matrix& b, Matrix& out);

// out (n x n) = V diag(weights) V', vectors V with eigenvector k in column k. With weights 1 /
// sqrt(eigenvalue) this is the inverse square root of the decomposed matrix; a weight of 0 leaves its vector
// out.
void composeSymmetric(const Matrix& vectors, const double* weights, Matrix& out);
