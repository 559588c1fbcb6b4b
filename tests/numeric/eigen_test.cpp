#include "numeric/eigen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "numeric/block.h"

TEST(SymmetricEigen, ReconstructsTheMatrixFromItsLowerTriangle) {
    std::mt19937 random(7);
    for (std::size_t n : {1u, 2u, 3u, 4u, 7u, 40u, 41u}) {
        const std::size_t stride = n + 2;
        std::vector<double> source(n * stride, NAN), vectors(n * stride), values(n);
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j <= i; ++j)
                source[i * stride + j] = static_cast<double>(random() % 2001) - 1000;
        ASSERT_EQ(SymmetricEigen(static_cast<int>(n), static_cast<int>(stride), vectors.data(), values.data(),
                                 source.data()),
                  success);
        for (std::size_t i = 0; i < n; ++i) {
            if (i > 0) EXPECT_GE(values[i - 1], values[i]);
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

TEST(SymmetricEigen, KnownValues) {
    constexpr std::size_t n = 10; // second differences: 2 - 2 cos(k pi / (n + 1))
    std::vector<double> source(n * n), vectors(n * n), values(n);
    for (std::size_t i = 0; i < n; ++i) {
        source[i * n + i] = 2.0;
        if (i > 0) source[i * n + i - 1] = -1.0;
    }
    SymmetricEigen(n, n, vectors.data(), values.data(), source.data());
    for (std::size_t k = 0; k < n; ++k)
        EXPECT_NEAR(values[k], 2.0 - 2.0 * std::cos(static_cast<double>(n - k) * std::numbers::pi / 11),
                    1e-14);
    source.assign(n * n, 0.0);
    source[0] = 1.0;
    SymmetricEigen(n, n, source.data(), values.data(), source.data());
    EXPECT_EQ(values[0], 1.0);
    EXPECT_EQ(values[1], 0.0);
}

TEST(EigenSortDescending, OfEqualValuesTheLastComesFirst) {
    double values[] = {1, 3, 3, 2};
    double columns[] = {0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3};
    EigenSortDescending(4, 4, columns, values);
    const double order[] = {2, 1, 3, 0};
    for (std::size_t k = 0; k < 16; ++k) EXPECT_EQ(columns[k], order[k % 4]);
    EXPECT_EQ(values[3], 1.0);
}

TEST(SymmetricEigen, EndsWithValuesThatAreNotFinite) {
    for (double odd : {static_cast<double>(NAN), static_cast<double>(INFINITY), 1e308, 5e-324}) {
        for (std::size_t place = 0; place < 25; ++place) {
            std::vector<double> source(25, 1.0), vectors(25), values(5);
            source[place] = odd;
            EXPECT_EQ(SymmetricEigen(5, 5, vectors.data(), values.data(), source.data()), success);
        }
    }
    double d[] = {1, NAN, 2}, e[] = {0, 1, 1};
    double vectors[] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_EQ(TridiagonalQL(3, 3, d, vectors, e), decompositionFailed);
}

TEST(SymmetricEigen, AllocatesOneVector) {
    double source[] = {2, 1, 1, 2}, vectors[4], values[2];
    failAllocation(1);
    EXPECT_EQ(SymmetricEigen(2, 2, vectors, values, source), outOfMemory);
    failAllocation(0);
    EXPECT_EQ(SymmetricEigen(2, 2, vectors, values, source), success);
    EXPECT_EQ(allocationCount(), 1);
    EXPECT_DOUBLE_EQ(values[0], 3.0);
}
