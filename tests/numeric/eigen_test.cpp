#include "numeric/eigen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "tests/support/failing_allocations.h"

TEST(SymmetricEigen, ReconstructsTheMatrixFromItsLowerTriangle) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform(-1000, 1000);
    for (int order : {1, 2, 3, 4, 7, 40, 41}) {
        const auto n = static_cast<std::size_t>(order), stride = n + 2;
        std::vector<double> source(n * stride, NAN), vectors(n * stride), values(n);
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j <= i; ++j) source[i * stride + j] = uniform(random);
        EXPECT_EQ(SymmetricEigen(order, order + 2, vectors.data(), values.data(), source.data()), success);
        for (std::size_t i = 0; i < n; ++i) {
            EXPECT_GE(values[i > 0 ? i - 1 : 0], values[i]);
            for (std::size_t j = 0; j <= i; ++j) {
                double element = 0.0, product = 0.0;
                for (std::size_t k = 0; k < n; ++k) {
                    element += values[k] * vectors[i * stride + k] * vectors[j * stride + k];
                    product += vectors[k * stride + i] * vectors[k * stride + j];
                }
                EXPECT_NEAR(element, source[i * stride + j], 1e-9);
                EXPECT_NEAR(product, i == j ? 1.0 : 0.0, 1e-13);
            }
        }
    }
}

// The eigenvalues of second differences are 2 - 2 cos(k pi / (n + 1)).
TEST(SymmetricEigen, GivesKnownValuesAndAllocatesOneVector) {
    constexpr std::size_t n = 10;
    double source[n * n] = {2.0}, vectors[n * n], values[n];
    for (std::size_t i = 1; i < n; ++i) source[i * n + i] = 2.0, source[i * n + i - 1] = -1.0;
    EXPECT_EQ(failEachAllocation([&] { return SymmetricEigen(n, n, vectors, values, source); }), 1);
    for (std::size_t k = 0; k < n; ++k)
        EXPECT_NEAR(values[k], 2.0 - 2.0 * std::cos(static_cast<double>(n - k) * std::numbers::pi / 11),
                    1e-14);
}

TEST(SymmetricEigen, EndsForAnyDoubles) {
    for (double odd : {static_cast<double>(NAN), static_cast<double>(INFINITY), 1e308, 5e-324})
        for (std::size_t place = 0; place < 9; ++place) {
            double source[] = {1, 1, 1, 1, 1, 1, 1, 1, 1}, vectors[9], values[3];
            source[place] = odd;
            EXPECT_EQ(SymmetricEigen(3, 3, vectors, values, source), success);
        }
    double d[] = {1, NAN, 2}, e[] = {0, 1, 1}, vectors[] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_EQ(TridiagonalQL(3, 3, d, vectors, e), decompositionFailed);
}

TEST(EigenSortDescending, OfEqualValuesTheLastComesFirst) {
    double values[] = {1, 3, 3, 2}, columns[] = {0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3};
    EigenSortDescending(4, 4, columns, values);
    const double order[] = {2, 1, 3, 0};
    for (std::size_t k = 0; k < 16; ++k) EXPECT_EQ(columns[k], order[k % 4]);
}
