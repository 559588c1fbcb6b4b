#pragma once

#include "numeric/block.h"

// Products of large matrices, in blocks that stay in the cache and tiles that stay in registers. The order of
// every sum is fixed, so that all machines get the same digits.

// From this order on, matrices are computed on by blocks; below it every kernel keeps its plain arithmetic.
constexpr Index blockedOrder = 256;

// Element (i, j) stands at data[i * rowStep + j * columnStep]; exchanging the steps transposes. Of a left
// factor, column j counts weights[j] times where there are weights.
struct MatrixView {
    const double* data;
    Index rowStep;
    Index columnStep;
    const double* weights = nullptr;
};

// c (rows x columns, in rows of stride doubles) += factor * a (rows x inner) b (inner x columns). c must not
// overlap a or b.
void addProduct(Index rows, Index columns, Index inner, double factor, const MatrixView& a,
                const MatrixView& b, double* c, Index stride);

// The same for a square c of which only the elements with j <= i are wanted; the others stay.
void addLowerProduct(Index order, Index inner, double factor, const MatrixView& a, const MatrixView& b,
                     double* c, Index stride);
