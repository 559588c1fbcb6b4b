#include "numeric/lu.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numeric/block.h"

// The exact inverse of a Hilbert matrix has whole elements.
TEST(MatrixInverse, InvertsAHilbertMatrixInsideALargerBlock) {
    constexpr int n = 6, stride = 8;
    double a[n * stride], inverse[n * stride] = {}, determinant = 5.0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < stride; ++j) a[i * stride + j] = j < n ? 1.0 / (i + j + 1) : NAN;
    ASSERT_EQ(MatrixInverse(n, stride, a, inverse, determinant), success);
    EXPECT_NEAR(determinant * 186313420339200000.0, 1.0, 1e-9);
    EXPECT_NEAR(inverse[2 * stride + 4], 1512000.0, 0.01);
    EXPECT_NEAR(inverse[5 * stride + 5], 698544.0, 0.01);
    EXPECT_EQ(inverse[6], 0.0);
}

// Second differences in reversed order: |A| = n + 1, the inverse min(i, j) (n + 1 - max(i, j)) / (n + 1), and
// n / 2 exchanges of columns.
TEST(MatrixInverse, LargeMatricesKnownInFull) {
    for (const Index n : {256, 270}) {
        Matrix a, copy, inverse;
        ASSERT_EQ(a.allocate(n, n) | copy.allocate(n, n) | inverse.allocate(n, n), success);
        for (Index i = 0; i < n; ++i) {
            a(i, n - 1 - i) = 2.0;
            if (i > 0) a(i, n - i) = a(i - 1, n - 1 - i) = -1.0;
        }
        double determinant = 0.0;
        std::copy(a.begin(), a.end(), copy.begin());
        ASSERT_EQ(MatrixInverse(copy, inverse, determinant), success);
        EXPECT_NEAR(determinant, n / 2 % 2 == 0 ? double(n + 1) : -double(n + 1), 1e-9);
        for (Index i = 0; i < n; ++i)
            for (Index j = 0; j < n; ++j) {
                const auto low = double(std::min(n - i, j + 1)), high = double(std::max(n - i, j + 1));
                EXPECT_NEAR(inverse(i, j), low * (double(n + 1) - high) / double(n + 1), 1e-11);
            }
        for (const double factor : {0.0, -1.0}) { // a row of zeros, and the same two
            for (Index j = 0; j < n; ++j) a(200, j) = factor * a(17, j);
            std::copy(a.begin(), a.end(), copy.begin());
            ASSERT_EQ(MatrixInverse(copy, inverse, determinant), success);
            EXPECT_EQ(determinant, 0.0);
            EXPECT_FALSE(std::isfinite(inverse(0, 0)) && std::isfinite(inverse(200, 200)));
        }
    }
}

// Determinant 0 stands for a matrix that LuDecompose refuses.
TEST(MatrixInverse, SmallMatrices) {
    const struct {
        int n;
        std::vector<double> a;
        double determinant;
        std::vector<double> inverse;
    } cases[] = {
        // clang-format off
        {1, {4}, 4, {0.25}}, {2, {2, 1, 1, 1}, 1, {1, -1, -1, 2}}, {2, {1, -2, 2, 1}, 5, {0.2, 0.4, -0.4, 0.2}},
        {1, {0}, 0, {}}, {2, {1, 2, 2, 4}, 0, {}}, {2, {0, 1, 0, 3}, 0, {}}, {2, {1, 2, NAN, NAN}, 0, {}},
        {3, {1, 2, 3, 0, 0, 0, 4, 5, 6}, 0, {}}, {3, {1, 0, 1, 0, 1, 1, 1, 1, 2}, 0, {}},
        {3, {NAN, 1, 2, 1, 5, 3, 2, 3, 6}, NAN, {}}, {3, {4, 1, 2, NAN, INFINITY, 3, 2, 3, 6}, NAN, {}},
        // clang-format on
    };
    for (const auto& item : cases) {
        std::vector<double> a = item.a, inverse(item.a.size());
        std::int32_t permutation[3];
        double determinant = 3.0, sign = 3.0;
        const ErrorCode code = item.determinant == 0.0 ? decompositionFailed : success;
        EXPECT_EQ(LuDecompose(item.n, item.n, a.data(), permutation, sign), code);
        EXPECT_EQ(sign == 3.0, code == decompositionFailed); // written on success only
        a = item.a;
        EXPECT_EQ(MatrixInverse(item.n, item.n, a.data(), inverse.data(), determinant), success);
        EXPECT_EQ(isSingular(item.n, item.n, item.a.data(), item.n, inverse.data()), item.inverse.empty());
        for (std::size_t i = 0; i < item.inverse.size(); ++i) EXPECT_DOUBLE_EQ(inverse[i], item.inverse[i]);
        EXPECT_TRUE(std::isnan(item.determinant) || std::fabs(determinant - item.determinant) < 1e-14);
    }
}

// By hand: the first of two equal pivots is taken, and the scale of a row goes with it.
TEST(LuDecompose, Pivots) {
    double tie[] = {1, 0.5, 2, 1.5}, carried[] = {1, 100, 0, 1, 1, 1, 0, 2, 1}, sign = 0.0;
    std::int32_t permutation[3];
    EXPECT_EQ(LuDecompose(2, 2, tie, permutation, sign), success);
    EXPECT_EQ(permutation[0], 0);
    EXPECT_EQ(LuDecompose(3, 3, carried, permutation, sign), success);
    EXPECT_TRUE(permutation[0] == 1 && permutation[1] == 2);
}

TEST(IsSingular, Limits) {
    for (double second : {9.9e9, 1e-300, 1e10, 0.0, -1.0, static_cast<double>(NAN)}) {
        const double a[] = {1, 0, 0, 1}, inverse[] = {1, 0, 0, 0, second, 0};
        EXPECT_EQ(isSingular(2, 2, a, 3, inverse), second != 9.9e9 && second != 1e-300) << second;
    }
}

TEST(Lu, EveryFailingAllocationIsOutOfMemory) {
    for (int call = 1; call <= 4; ++call) {
        double a[] = {0, 1, 1, 0}, inverse[4], determinant = 7.0;
        failAllocation(call);
        EXPECT_EQ(MatrixDeterminant(2, 2, a, determinant), call <= 2 ? outOfMemory : success) << call;
        EXPECT_EQ(determinant == -1.0, call > 2);
        failAllocation(call);
        EXPECT_EQ(MatrixInverse(2, 2, a, inverse, determinant), call <= 3 ? outOfMemory : success) << call;
    }
    failAllocation(0);
}
