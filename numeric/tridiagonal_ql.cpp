#include "numeric/tridiagonal_ql.h"

#include <algorithm>
#include <cmath>

namespace {

struct Rotation {
    double c;
    double s;
};

void rotateRows(Index order, double* __restrict high, double* __restrict low, Rotation rotation) {
    for (Index k = 0; k < order; ++k) {
        const double f = high[k];
        high[k] = rotation.s * low[k] + rotation.c * f;
        low[k] = rotation.c * low[k] - rotation.s * f;
    }
}

// rotateRows of high and middle by first, then of middle and low by second, in one pass.
void rotateThreeRows(Index order, double* __restrict high, double* __restrict middle, double* __restrict low,
                     Rotation first, Rotation second) {
    const double c1 = first.c, s1 = first.s, c2 = second.c, s2 = second.s;
    Index k = 0;
    for (; k + 2 <= order; k += 2) {
        const double h0 = high[k], h1 = high[k + 1];
        const double m0 = middle[k], m1 = middle[k + 1];
        const double l0 = low[k], l1 = low[k + 1];
        const double f0 = c1 * m0 - s1 * h0, f1 = c1 * m1 - s1 * h1;
        high[k] = s1 * m0 + c1 * h0;
        high[k + 1] = s1 * m1 + c1 * h1;
        middle[k] = s2 * l0 + c2 * f0;
        middle[k + 1] = s2 * l1 + c2 * f1;
        low[k] = c2 * l0 - s2 * f0;
        low[k + 1] = c2 * l1 - s2 * f1;
    }
    if (k == order) return;
    const double f = c1 * middle[k] - s1 * high[k];
    high[k] = s1 * middle[k] + c1 * high[k];
    middle[k] = s2 * low[k] + c2 * f;
    low[k] = c2 * low[k] - s2 * f;
}

// The rotations of a QL step go from the last pair of rows to the first; each waits for the one after it, so
// that the row that both change is loaded once.
struct RowRotations {
    Index length;
    Index width;
    double* high = nullptr; // of the waiting rotation, its other row before it in memory
    Rotation waiting{};
};

void rotate(RowRotations& rows, double* high, Rotation rotation) {
    if (rows.high == nullptr) {
        rows.high = high;
        rows.waiting = rotation;
        return;
    }
    rotateThreeRows(rows.length, rows.high, high, high - rows.width, rows.waiting, rotation);
    rows.high = nullptr;
}

void finish(const RowRotations& rows) {
    if (rows.high != nullptr) rotateRows(rows.length, rows.high, rows.high - rows.width, rows.waiting);
}

// The first m >= l after which the tridiagonal matrix falls apart; the last index where it does not.
Index endOfBlock(Index l, Index order, const double* d, const double* e) {
    Index m = l;
    for (; m + 1 < order; ++m) {
        const double size = std::fabs(d[m]) + std::fabs(d[m + 1]);
        if (std::fabs(e[m]) + size == size) break;
    }
    return m;
}

// One implicit QL step on the block l .. m, e[i] between i and i + 1.
void qlStep(Index l, Index m, double* d, double* e, const RotatedRows& rows) {
    const double slope = (d[l + 1] - d[l]) / (2.0 * e[l]);
    const double root = std::hypot(slope, 1.0);
    double g = d[m] - d[l] + e[l] / (slope + (slope >= 0.0 ? root : -root));
    double s = 1.0;
    double c = 1.0;
    double p = 0.0;
    RowRotations rotations{rows.length, rows.width, nullptr, {}};
    for (Index i = m; i-- > l;) {
        const double f = s * e[i];
        const double b = c * e[i];
        const double radius = std::hypot(f, g);
        e[i + 1] = radius;
        if (radius == 0.0) { // underflow: the block falls apart here
            d[i + 1] -= p;
            e[m] = 0.0;
            finish(rotations);
            return;
        }
        s = f / radius;
        c = g / radius;
        g = d[i + 1] - p;
        const double r = (d[i] - g) * s + 2.0 * c * b;
        p = s * r;
        d[i + 1] = g + p;
        g = c * r - b;
        rotate(rotations, rows.data + (i + 1) * rows.width, {c, s});
    }
    finish(rotations);
    d[l] -= p;
    e[l] = g;
    e[m] = 0.0;
}

} // namespace

ErrorCode rotateToDiagonal(Index n, double* d, double* e, int mostIterations, const RotatedRows& rows) {
    if (n == 0) return success;
    std::move(e + 1, e + n, e);
    e[n - 1] = 0.0;
    for (Index l = 0; l < n; ++l) {
        int iterations = 0;
        for (Index m = endOfBlock(l, n, d, e); m != l; m = endOfBlock(l, n, d, e)) {
            if (++iterations > mostIterations) return decompositionFailed;
            qlStep(l, m, d, e, rows);
        }
    }
    return success;
}
