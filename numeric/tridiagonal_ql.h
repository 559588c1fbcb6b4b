#pragma once

#include "numeric/block.h"

// Vectors of `length` elements in rows `width` apart, which the rotations of columns are applied to; none
// where eigenvalues alone are wanted.
struct RotatedRows {
    double* data = nullptr;
    Index length = 0;
    Index width = 0;
};

// TridiagonalQL, with the vectors in rows.
[[nodiscard]] ErrorCode rotateToDiagonal(Index n, double* d, double* e, RotatedRows rows = {});
