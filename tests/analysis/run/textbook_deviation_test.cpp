#include "analysis/run/textbook_deviation.h"

#include <cmath>
#include <gtest/gtest.h>

// Expected: the 5 percent points of chi-square with 2 degrees, -2 log 0.05, and of F with 2 and 2, 19.
TEST(TextbookDeviation, BeginsBehindTheSixthPlace) {
    const double chiSquares[] = {-2.0 * std::log(0.05), -2.0 * std::log(0.05)}, df[] = {2.0, 2.0};
    const double near[] = {0.05, 0.0500009}, far[] = {0.05, 0.0500011};
    EXPECT_FALSE(chiSquareTailsDeviate(2, chiSquares, df, near));
    EXPECT_TRUE(chiSquareTailsDeviate(2, chiSquares, df, far));
    const double f[] = {19.0, 19.0};
    EXPECT_FALSE(fTailsDeviate(2, f, df, df, near));
    EXPECT_TRUE(fTailsDeviate(2, f, df, df, far));
    EXPECT_FALSE(fTailsDeviate(0, f, df, df, far));
}

TEST(TextbookDeviation, WhatIsNoNumberIsLikeItself) {
    const double inf = INFINITY, nan = NAN;
    EXPECT_FALSE(deviates(nan, nan));
    EXPECT_FALSE(deviates(inf, inf));
    EXPECT_TRUE(deviates(nan, 1.0));
    EXPECT_TRUE(deviates(1.0, inf));
}
