#include "numeric/product.h"

#include <algorithm>
#include <cstddef>

void multiply(int rows, int inner, int columns, const double* a, const double* b, double* out) {
    const std::size_t width = static_cast<std::size_t>(columns);
    const std::size_t depth = static_cast<std::size_t>(inner);
    for (std::size_t i = 0; i < static_cast<std::size_t>(rows); ++i) {
        double* row = out + i * width;
        std::fill_n(row, width, 0.0);
        for (std::size_t k = 0; k < depth; ++k) {
            const double factor = a[i * depth + k];
            for (std::size_t j = 0; j < width; ++j) row[j] += factor * b[k * width + j];
        }
    }
}

void composeSymmetric(int n, const double* vectors, const double* weights, double* out) {
    const std::size_t order = static_cast<std::size_t>(n);
    for (std::size_t i = 0; i < order; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = 0.0;
            for (std::size_t k = 0; k < order; ++k) {
                if (weights[k] != 0.0) sum += vectors[i * order + k] * weights[k] * vectors[j * order + k];
            }
            out[i * order + j] = out[j * order + i] = sum;
        }
    }
}
