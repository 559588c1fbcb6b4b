#pragma once

#include "numeric/block.h"

// Vectors of `length` elements in rows `width` apart, which the rotations of columns are applied to; none
// where eigenvalues alone are wanted.
struct RotatedRows {
    double* data = nullptr;
    Index length = 0;
    Index width = 0;
};

// How often an eigenvalue is approached before it is given up: what every report below order 256 is made
// with, and enough for matrices whose elements fall off along the diagonal.
constexpr int classicIterations = 31;
constexpr int patientIterations = 1000;

// TridiagonalQL, with the vectors in rows, and so many iterations for an eigenvalue.
[[nodiscard]] ErrorCode rotateToDiagonal(Index n, double* d, double* e, int mostIterations,
                                         const RotatedRows& rows = {});
