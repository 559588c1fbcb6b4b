#pragma once

#include <cstdint>

#include "numeric/matrix.h"

// Linear systems by triangular factors. Matrices are n x n blocks in rows of stride doubles, stride >= n.

// Factors a in place into a unit lower and an upper triangle (Crout 1941, pivots chosen by size relative to
// their row). permutation (n) gets the row that was exchanged with each row in turn, sign +1 or -1 for an
// even or odd number of exchanges. Returns decompositionFailed for a row of zeros or a zero pivot (a is then
// partly factored, sign and the rest of permutation are not written), or outOfMemory.
[[nodiscard]] ErrorCode LuDecompose(Index n, Index stride, double* a, std::int32_t* permutation,
                                    double& sign);

// Replaces the right-hand side b (n) by the solution x, from the factors and permutation of LuDecompose.
// Returns 0.
ErrorCode LuSolve(Index n, Index stride, const double* factors, const std::int32_t* permutation, double* b);

// Inverse and determinant of a, which is destroyed; inverse has the stride of a. Returns success or
// outOfMemory. A matrix that cannot be factored is not refused: its determinant is 0, and at least one
// diagonal element of its inverse is not finite. Whoever needs to know asks isSingular.
[[nodiscard]] ErrorCode MatrixInverse(Index n, Index stride, double* a, double* inverse, double& determinant);

// The same for one column of the inverse alone (n), for a third of the time.
[[nodiscard]] ErrorCode invertColumn(Index n, Index stride, double* a, Index j, double* column,
                                     double& determinant);

// Determinant of a, which is destroyed: 0 where it cannot be factored. Returns success or outOfMemory.
[[nodiscard]] ErrorCode MatrixDeterminant(Index n, Index stride, double* a, double& determinant);

// Whether a (as it was before MatrixInverse) counts as singular: some a_jj * inverse_jj is not finite, not
// above 0, or 1e10 and more. For a correlation matrix that product is the variance inflation of variable j. A
// failed factoring is always seen here, because LuSolve divides element j of every solution by the zero at
// place j.
bool isSingular(Index n, Index stride, const double* a, Index inverseStride, const double* inverse);

// The same for whole square matrices.
[[nodiscard]] ErrorCode MatrixInverse(Matrix& a, Matrix& inverse, double& determinant);
[[nodiscard]] ErrorCode MatrixDeterminant(Matrix& a, double& determinant);
bool isSingular(const Matrix& a, const Matrix& inverse);

// The inverse of a, which is kept: scratch takes its copy. Returns success, outOfMemory, or singularMatrix
// where isSingular says so.
[[nodiscard]] ErrorCode invertRegular(const Matrix& a, Matrix& scratch, Matrix& inverse);
