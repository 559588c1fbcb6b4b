#pragma once

#include "numeric/matrix.h"

// Eigenvalues and eigenvectors of symmetric matrices. Matrices are n x n blocks in rows of stride doubles,
// stride >= n; eigenvector k is column k. Only the lower triangle of a symmetric matrix is read.

// Reduces the symmetric a to tridiagonal form (Householder 1958; Martin, Reinsch and Wilkinson 1968). d (n)
// gets the diagonal, e (n) the elements beside it, e[i] between i - 1 and i and e[0] = 0, and a the
// orthogonal Q with source = Q T Q'. Returns 0.
ErrorCode HouseholderTridiagonalise(Index n, Index stride, double* a, double* d, double* e);

// QL iterations with implicit shifts (Dubrulle 1970) on the tridiagonal d and e, e as left by
// HouseholderTridiagonalise and destroyed. d becomes the eigenvalues in no order, the columns of vectors are
// rotated along. Returns 0, or decompositionFailed when an eigenvalue needs more than 31 iterations.
[[nodiscard]] ErrorCode TridiagonalQL(Index n, Index stride, double* d, double* vectors, double* e);

// Sorts the eigenvalues into descending order together with the columns; of equal ones the last comes first,
// which shows in reports. Returns 0.
ErrorCode EigenSortDescending(Index n, Index stride, double* vectors, double* values);

// Eigenvalues of source in descending order and its orthonormal eigenvectors, signs as they come. source may
// be vectors itself. From order 256 on other methods with scratch of three such matrices serve. Returns
// success or outOfMemory; values and vectors that did not converge are returned with 0.
[[nodiscard]] ErrorCode SymmetricEigen(Index n, Index stride, double* vectors, double* values,
                                       const double* source);

// The same for whole square matrices; values has one element for each row.
[[nodiscard]] ErrorCode SymmetricEigen(Matrix& vectors, Block<double>& values, const Matrix& source);

// The eigenvalues alone, of a matrix that is destroyed; the same as from SymmetricEigen, from order 256 on to
// rounding. Returns success or outOfMemory.
[[nodiscard]] ErrorCode symmetricEigenvalues(Matrix& a, Block<double>& values);
