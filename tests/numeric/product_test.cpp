#include "numeric/product.h"

#include <gtest/gtest.h>

#include <random>

namespace {

void fillRandomly(Matrix& matrix) {
    static std::mt19937 random(11);
    std::normal_distribution<double> normal;
    for (double& element : matrix) element = normal(random);
}

} // namespace

// Below order 256 in turn of the elements, from there on in blocks; both are sums as they stand in the
// textbooks.
TEST(Products, AreSumsForEverySize) {
    const struct {
        Index rows, inner, columns;
    } cases[] = {{3, 4, 2}, {1, 256, 1}, {70, 300, 5}, {261, 257, 130}};
    for (const auto& one : cases) {
        Matrix a, b, out;
        ASSERT_EQ(a.allocate(one.rows, one.inner) | b.allocate(one.inner, one.columns) |
                      out.allocate(one.rows, one.columns),
                  success);
        fillRandomly(a);
        fillRandomly(b);
        out.fill(7.0);
        multiply(a, b, out);
        for (Index i = 0; i < one.rows; ++i)
            for (Index j = 0; j < one.columns; ++j) {
                double sum = 0.0;
                for (Index k = 0; k < one.inner; ++k) sum += a(i, k) * b(k, j);
                EXPECT_NEAR(out(i, j), sum, 1e-12);
            }
    }
}

TEST(Products, ComposeWithWeights) {
    for (const Index n : {5, 258}) {
        Matrix vectors, weights, out;
        ASSERT_EQ(vectors.allocate(n, n) | weights.allocate(1, n) | out.allocate(n, n), success);
        fillRandomly(vectors);
        fillRandomly(weights);
        std::fill_n(weights.data(), 3, 0.0);
        composeSymmetric(vectors, weights.data(), out);
        for (Index i = 0; i < n; ++i)
            for (Index j = 0; j < n; ++j) {
                double sum = 0.0;
                for (Index k = 3; k < n; ++k) sum += vectors(i, k) * weights(0, k) * vectors(j, k);
                EXPECT_NEAR(out(i, j), sum, 1e-12);
            }
    }
}
