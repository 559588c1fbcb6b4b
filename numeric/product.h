#pragma once

// Products of row-major matrices without padding; out must not be an input.

// out (rows x columns) = a (rows x inner) b (inner x columns).
void multiply(int rows, int inner, int columns, const double* a, const double* b, double* out);

// out (n x n) = V diag(weights) V', vectors V with eigenvector k in column k. With weights 1 /
// sqrt(eigenvalue) this is the inverse square root of the decomposed matrix; a weight of 0 leaves its vector
// out.
void composeSymmetric(int n, const double* vectors, const double* weights, double* out);
