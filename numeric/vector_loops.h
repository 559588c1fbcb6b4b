#pragma once

#include "numeric/block.h"

// Loops over vectors, written out for two or four elements, which lets a compiler use vector registers
// without being asked to.

// a'b. Four sums are faster and more accurate than one.
inline double dot(Index count, const double* a, const double* b) {
    double sums[4] = {};
    Index k = 0;
    for (; k + 4 <= count; k += 4)
        for (Index lane = 0; lane < 4; ++lane) sums[lane] += a[k + lane] * b[k + lane];
    double sum = (sums[0] + sums[1]) + (sums[2] + sums[3]);
    for (; k < count; ++k) sum += a[k] * b[k];
    return sum;
}

// target += f a
inline void addMultiple(Index count, double* __restrict target, double f, const double* __restrict a) {
    Index k = 0;
    for (; k + 2 <= count; k += 2) {
        target[k] += f * a[k];
        target[k + 1] += f * a[k + 1];
    }
    for (; k < count; ++k) target[k] += f * a[k];
}

// target -= f a + g b
inline void subtractMultiples(Index count, double* __restrict target, double f, const double* __restrict a,
                              double g, const double* __restrict b) {
    Index k = 0;
    for (; k + 2 <= count; k += 2) {
        target[k] -= f * a[k] + g * b[k];
        target[k + 1] -= f * a[k + 1] + g * b[k + 1];
    }
    for (; k < count; ++k) target[k] -= f * a[k] + g * b[k];
}
