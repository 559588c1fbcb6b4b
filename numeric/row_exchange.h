#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "numeric/block.h"

// Brings the row from j on with the greatest element of column j, by rows scaled to a largest element of 1,
// to place j of an n x n matrix whose rows begin `stride` apart, and notes it: its place in the permutation,
// the sign of that, the scale that moves with it. Returns the pivot.
inline double exchangeRows(Index j, Index n, Index stride, double* a, double* scales,
                           std::int32_t* permutation, double& sign) {
    Index pivotRow = j;
    double best = 0.0;
    for (Index i = j; i < n; ++i) {
        const double weight = scales[i] * std::fabs(a[i * stride + j]);
        if (weight > best) {
            best = weight;
            pivotRow = i;
        }
    }
    if (pivotRow != j) {
        std::swap_ranges(a + j * stride, a + j * stride + n, a + pivotRow * stride);
        scales[pivotRow] = scales[j];
        sign = -sign;
    }
    permutation[j] = static_cast<std::int32_t>(pivotRow);
    return a[j * stride + j];
}
