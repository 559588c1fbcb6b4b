#include "numeric/eigen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <random>
#include <vector>

#include "tests/support/failing_allocations.h"

TEST(SymmetricEigen, ReconstructsTheMatrixFromItsLowerTriangle) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform(-1000, 1000);
    for (int order : {1, 2, 3, 4, 7, 40, 41, 256, 261}) {
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

// For vectors x of random elements, A x = V L V' x and V' V x = x.
TEST(SymmetricEigen, LargeMatricesOfEveryKind) {
    constexpr Index n = 270;
    std::mt19937 random(3);
    std::normal_distribution<double> normal;
    const struct {
        const char* kind;
        double (*element)(Index i, Index j, double z); // j <= i
    } cases[] = {
        {"zeros", [](Index, Index, double) { return 0.0; }},
        {"huge", [](Index, Index, double z) { return z * 1e305; }},
        {"tiny", [](Index, Index, double z) { return z * 1e-305; }},
        {"one huge", [](Index i, Index j, double z) { return i == n - 1 && j == 0 ? 1e300 : z; }},
        {"diagonal and rank one", [](Index i, Index j, double) { return (i == j ? 1.0 : 0.0) + 1.0 / n; }},
        {"blocks", [](Index i, Index j, double) { return i / 37 == j / 37 ? 1.0 : 0.0; }},
        {"falling", [](Index i, Index j, double z) { return z * std::exp(-0.1 * double(i + j)); }},
        {"rising", [](Index i, Index j, double z) { return z * std::exp(0.1 * double(i + j)); }},
        {"nearly the same", [](Index i, Index j, double z) { return i == j ? 1.0 : z * 1e-15; }},
        {"pairs", // Wilkinson 1965
         [](Index i, Index j, double) { return i == j ? double(std::abs(i - n / 2)) : double(i == j + 1); }},
    };
    for (const auto& one : cases) {
        Matrix a, vectors;
        Block<double> values, alone, x, product, inner;
        ASSERT_EQ(a.allocate(n, n) | vectors.allocate(n, n) | values.allocate(n) | alone.allocate(n) |
                      x.allocate(n) | product.allocate(n) | inner.allocate(n),
                  success);
        for (Index i = 0; i < n; ++i)
            for (Index j = 0; j <= i; ++j) a(i, j) = a(j, i) = one.element(i, j, normal(random));
        ASSERT_EQ(SymmetricEigen(vectors, values, a), success);
        const double size = std::max(values[0], -values[n - 1]);
        for (double& element : x) element = normal(random);
        for (Index i = 0; i < n; ++i)
            for (Index k = 0; k < n; ++k) product[i] += a(i, k) * x[k], inner[k] += vectors(i, k) * x[i];
        for (Index i = 0; i < n; ++i) {
            double image = 0.0, same = 0.0;
            for (Index k = 0; k < n; ++k) {
                image += vectors(i, k) * values[k] * inner[k];
                same += vectors(i, k) * inner[k];
            }
            EXPECT_NEAR(image, product[i], 1e-12 * size) << one.kind;
            EXPECT_NEAR(same, x[i], 1e-12) << one.kind;
        }
        ASSERT_EQ(symmetricEigenvalues(a, alone), success);
        for (Index k = 0; k < n; ++k) EXPECT_NEAR(alone[k], values[k], 1e-12 * size) << one.kind;
    }
}

TEST(SymmetricEigen, EndsForAnyDoubles) {
    for (double odd : {static_cast<double>(NAN), static_cast<double>(INFINITY), 1e308, 5e-324})
        for (std::size_t place = 0; place < 9; ++place) {
            double source[] = {1, 1, 1, 1, 1, 1, 1, 1, 1}, vectors[9], values[3];
            source[place] = odd;
            EXPECT_EQ(SymmetricEigen(3, 3, vectors, values, source), success);
        }
    Matrix large, vectors;
    Block<double> values;
    ASSERT_EQ(large.allocate(256, 256) | vectors.allocate(256, 256) | values.allocate(256), success);
    EXPECT_GT(failEachAllocation([&] { return SymmetricEigen(vectors, values, large); }), 1);
    EXPECT_GT(failEachAllocation([&] { return symmetricEigenvalues(large, values); }), 1);
    large(200, 100) = INFINITY;
    EXPECT_EQ(SymmetricEigen(vectors, values, large), success);
    EXPECT_TRUE(std::isnan(values[0]) && std::isnan(vectors(255, 255)));
    EXPECT_EQ(symmetricEigenvalues(large, values), success);
    EXPECT_TRUE(std::isnan(values[255]));
}

TEST(TridiagonalQL, GivesUp) {
    double d[] = {1, NAN, 2}, e[] = {0, 1, 1}, vectors[] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_EQ(TridiagonalQL(3, 3, d, vectors, e), decompositionFailed);
}

TEST(EigenSortDescending, OfEqualValuesTheLastComesFirst) {
    double values[] = {1, 3, 3, 2}, columns[] = {0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3};
    EigenSortDescending(4, 4, columns, values);
    const double order[] = {2, 1, 3, 0};
    for (std::size_t k = 0; k < 16; ++k) EXPECT_EQ(columns[k], order[k % 4]);
}
