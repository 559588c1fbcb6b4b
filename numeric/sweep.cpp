#include "numeric/sweep.h"

#include "numeric/vector_loops.h"

namespace {

void sweepSymmetric(Matrix& a, Index k, double sign, double* column) {
    const Index n = a.rows();
    for (Index i = 0; i < n; ++i) column[i] = i < k ? a(k, i) : a(i, k);
    const double pivot = column[k];
    column[k] = 0.0; // row and column k get their elements below
    for (Index i = 0; i < n; ++i) {
        if (i != k) addMultiple(i + 1, a.row(i), -(column[i] / pivot), column);
    }
    for (Index i = 0; i < n; ++i) (i < k ? a(k, i) : a(i, k)) = sign * column[i] / pivot;
    a(k, k) = -1.0 / pivot;
}

} // namespace

void sweepOut(Matrix& a, Index k, Index first) {
    const Index n = a.rows();
    const double* const pivots = a.row(k);
    for (Index i = first; i < n; ++i) {
        double* const row = a.row(i);
        addMultiple(n - first, row + first, -(row[k] / pivots[k]), pivots + first);
    }
}

void sweepIn(Matrix& a, Index k, double* column) {
    sweepSymmetric(a, k, 1.0, column);
}

void sweepBack(Matrix& a, Index k, double* column) {
    sweepSymmetric(a, k, -1.0, column);
}
