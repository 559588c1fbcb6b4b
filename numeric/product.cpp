#include "numeric/product.h"

#include "numeric/block_product.h"

void multiply(const Matrix& a, const Matrix& b, Matrix& out) {
    if (a.columns() >= blockedOrder) {
        for (Index i = 0; i < a.rows(); ++i) std::fill_n(out.row(i), b.columns(), 0.0);
        addProduct(a.rows(), b.columns(), a.columns(), 1.0, {a.data(), a.columns(), 1},
                   {b.data(), b.columns(), 1}, out.data(), out.columns());
        return;
    }
    for (Index i = 0; i < a.rows(); ++i) {
        double* row = out.row(i);
        std::fill_n(row, b.columns(), 0.0);
        for (Index k = 0; k < a.columns(); ++k) {
            const double factor = a(i, k);
            const double* other = b.row(k);
            for (Index j = 0; j < b.columns(); ++j) row[j] += factor * other[j];
        }
    }
}

void composeSymmetric(const Matrix& vectors, const double* weights, Matrix& out) {
    const Index n = vectors.columns();
    if (n >= blockedOrder) {
        out.fill(0.0);
        addLowerProduct(n, n, 1.0, {vectors.data(), n, 1, weights}, {vectors.data(), 1, n}, out.data(), n);
        for (Index i = 0; i < n; ++i)
            for (Index j = 0; j < i; ++j) out(j, i) = out(i, j);
        return;
    }
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j <= i; ++j) {
            double sum = 0.0;
            for (Index k = 0; k < n; ++k) {
                if (weights[k] != 0.0) sum += vectors(i, k) * weights[k] * vectors(j, k);
            }
            out(i, j) = out(j, i) = sum;
        }
    }
}
