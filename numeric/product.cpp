#include "numeric/product.h"

void multiply(const Matrix& a, const Matrix& b, Matrix& out) {
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

void multiply(Index rows, Index inner, Index columns, const double* a, const double* b, double* out) {
    const Index width = columns;
    const Index depth = inner;
    for (Index i = 0; i < rows; ++i) {
        double* row = out + i * width;
        std::fill_n(row, width, 0.0);
        for (Index k = 0; k < depth; ++k) {
            const double factor = a[i * depth + k];
            for (Index j = 0; j < width; ++j) row[j] += factor * b[k * width + j];
        }
    }
}

void composeSymmetric(Index n, const double* vectors, const double* weights, double* out) {
    const Index order = n;
    for (Index i = 0; i < order; ++i) {
        for (Index j = 0; j <= i; ++j) {
            double sum = 0.0;
            for (Index k = 0; k < order; ++k) {
                if (weights[k] != 0.0) sum += vectors[i * order + k] * weights[k] * vectors[j * order + k];
            }
            out[i * order + j] = out[j * order + i] = sum;
        }
    }
}
