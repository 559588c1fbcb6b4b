#include "numeric/lu.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numeric/block.h"

TEST(MatrixInverse, InvertsAHilbertMatrixInsideALargerBlock) {
    constexpr int n = 6, stride = 8;
    std::vector<double> a(n * stride, NAN), inverse(n * stride, -7.0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) a[static_cast<std::size_t>(i * stride + j)] = 1.0 / (i + j + 1);
    const std::vector<double> hilbert = a;
    double determinant = 5.0;
    ASSERT_EQ(MatrixInverse(n, stride, a.data(), inverse.data(), determinant), success);
    // The exact inverse and determinant are whole numbers and the reciprocal of one.
    EXPECT_NEAR(determinant * 186313420339200000.0, 1.0, 1e-9);
    EXPECT_NEAR(inverse[0], 36.0, 1e-7);
    EXPECT_NEAR(inverse[2 * stride + 4], -3969000.0 / 0.9, 0.05); // -4410000
    EXPECT_NEAR(inverse[5 * stride + 5], 698544.0, 0.01);
    EXPECT_EQ(inverse[6], -7.0);
    EXPECT_FALSE(isSingular(n, stride, hilbert.data(), stride, inverse.data()));
}

TEST(MatrixInverse, SmallCases) {
    struct Case {
        int n;
        std::vector<double> a;
        double determinant;
        std::vector<double> inverse;
    };
    const Case cases[] = {{1, {4}, 4, {0.25}},
                          {2, {0, 1, 1, 0}, -1, {0, 1, 1, 0}},
                          {3, {0, 2, 1, 1, 0, 0, 0, 0, 4}, -8, {0, 1, 0, 0.5, 0, -0.125, 0, 0, 0.25}}};
    for (const Case& item : cases) {
        std::vector<double> a = item.a, inverse(item.a.size()), again = item.a;
        double determinant = 0.0, alone = 0.0;
        EXPECT_EQ(MatrixInverse(item.n, item.n, a.data(), inverse.data(), determinant), success);
        EXPECT_EQ(MatrixDeterminant(item.n, item.n, again.data(), alone), success);
        EXPECT_DOUBLE_EQ(determinant, item.determinant);
        EXPECT_DOUBLE_EQ(alone, item.determinant);
        for (std::size_t i = 0; i < inverse.size(); ++i) EXPECT_DOUBLE_EQ(inverse[i], item.inverse[i]);
    }
}

TEST(LuDecompose, TheFirstOfEqualPivotsIsTaken) {
    double a[] = {1, 0.5, 2, 1.5};
    std::int32_t permutation[2];
    double sign = 0.0;
    EXPECT_EQ(LuDecompose(2, 2, a, permutation, sign), success);
    EXPECT_EQ(permutation[0], 0);
    EXPECT_EQ(sign, 1.0);
}

TEST(MatrixInverse, AFailedFactoringIsNotRefusedButSeen) {
    const std::vector<double> matrices[] = {{0},
                                            {1, 2, 0, 0},
                                            {1, 2, 2, 4},
                                            {0, 1, 0, 3},
                                            {1, 2, NAN, NAN},
                                            {1, 2, 3, 0, 0, 0, 4, 5, 6},
                                            {2, 0, 4, 1, 0, 2, 3, 0, 7},
                                            {1, 0, 1, 0, 1, 1, 1, 1, 2}};
    for (const std::vector<double>& matrix : matrices) {
        const int n = static_cast<int>(std::lround(std::sqrt(static_cast<double>(matrix.size()))));
        std::vector<double> a = matrix, inverse(matrix.size());
        std::vector<std::int32_t> permutation(matrix.size());
        double determinant = 3.0, sign = 3.0;
        EXPECT_EQ(LuDecompose(n, n, a.data(), permutation.data(), sign), decompositionFailed);
        EXPECT_EQ(sign, 3.0);
        a = matrix;
        EXPECT_EQ(MatrixInverse(n, n, a.data(), inverse.data(), determinant), success);
        EXPECT_EQ(determinant, 0.0);
        EXPECT_TRUE(isSingular(n, n, matrix.data(), n, inverse.data()));
    }
}

TEST(MatrixInverse, TakesValuesThatAreNotFinite) {
    for (double odd : {static_cast<double>(NAN), static_cast<double>(INFINITY)}) {
        for (std::size_t place = 0; place < 9; ++place) {
            std::vector<double> a{4, 1, 2, 1, 5, 3, 2, 3, 6}, inverse(9);
            a[place] = odd;
            const std::vector<double> matrix = a;
            double determinant = 0.0;
            EXPECT_EQ(MatrixInverse(3, 3, a.data(), inverse.data(), determinant), success);
            EXPECT_TRUE(isSingular(3, 3, matrix.data(), 3, inverse.data())) << odd << place;
        }
    }
}

TEST(IsSingular, Limits) {
    for (const auto& [second, expected] : {std::pair{9.9e9, false},
                                           {1e10, true},
                                           {0.0, true},
                                           {-1.0, true},
                                           {static_cast<double>(NAN), true},
                                           {1e-300, false}}) {
        const double a[] = {1, 0, 0, 1};
        const double inverse[] = {1, 0, 0, 0, second, 0};
        EXPECT_EQ(isSingular(2, 2, a, 3, inverse), expected) << second;
    }
}

TEST(Lu, EveryFailingAllocationIsOutOfMemory) {
    double a[] = {4, 1, 1, 3}, inverse[4], determinant;
    for (int call = 1; call <= 3; ++call) {
        failAllocation(call);
        EXPECT_EQ(MatrixInverse(2, 2, a, inverse, determinant), outOfMemory) << call;
        if (call == 3) continue;
        failAllocation(call);
        EXPECT_EQ(MatrixDeterminant(2, 2, a, determinant), outOfMemory) << call;
    }
    failAllocation(0);
    EXPECT_EQ(MatrixInverse(2, 2, a, inverse, determinant), success);
    EXPECT_DOUBLE_EQ(determinant, 11.0);
}
