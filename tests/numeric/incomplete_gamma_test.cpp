#include "numeric/incomplete_gamma.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

void expectRelative(double value, double expected) {
    EXPECT_LE(std::fabs(value / expected - 1.0), 1e-12) << value << " instead of " << expected;
}

// From the finite sums for whole degrees of freedom in decimal arithmetic of 60 digits.
TEST(ChiSquareUpperTail, IsAccurateFarIntoTheTail) {
    const struct {
        double x, df, tail;
    } cases[] = {
        {3.841459, 1, 4.99999946531957673e-02},  {1400.25, 1, 1.85397351254344441e-306},
        {0.0001, 3, 9.99999734046458477e-01},    {7.8, 3, 5.03310978598533534e-02},
        {27.5, 9, 1.15565128435116062e-03},      {29.75, 30, 4.78509596549785421e-01},
        {700, 30, 4.91078417630291202e-128},     {95.5, 100, 6.08633236174539460e-01},
        {1200.5, 301, 1.35203971807510269e-107}, {5200, 5000, 2.38189980207406532e-02},
        {9000, 10000, 9.99999999999872990e-01},  {14000, 10000, 1.58421939478260724e-140},
    };
    for (const auto& c : cases) expectRelative(ChiSquareUpperTail(c.x, c.df), c.tail);
    for (const double x : {1e-9, 0.3, 2.9, 3.1, 40.0, 700.0}) {
        expectRelative(ChiSquareUpperTail(x, 1), std::erfc(std::sqrt(x / 2)));
        expectRelative(ChiSquareUpperTail(x, 4), std::exp(-x / 2) * (1 + x / 2));
        expectRelative(UpperGammaRatio(1, x), std::exp(-x));
    }
}

TEST(ChiSquareUpperTail, EndsForAnyArguments) {
    const double inf = INFINITY, nan = NAN;
    for (const double least : {0.0, -1e-9}) EXPECT_EQ(ChiSquareUpperTail(least, 5), 1);
    for (const double huge : {1e308, inf}) EXPECT_EQ(ChiSquareUpperTail(huge, 1), 0);
    for (const auto& [x, df] : {std::pair{nan, 1.0}, {1.0, nan}, {1.0, 0.0}, {1.0, -3.0}})
        EXPECT_TRUE(std::isnan(ChiSquareUpperTail(x, df))) << x << ' ' << df;
    for (const double huge : {1e12, 1e300, inf}) ChiSquareUpperTail(huge, huge);
}

} // namespace
