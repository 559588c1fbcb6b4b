#include "numeric/distributions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numeric/beta.h"
#include "numeric/gamma.h"

namespace {

double logGamma(double x) {
    double value = -1.0;
    LogGamma(x, value);
    return value;
}

double fTail(double f, double numerator, double denominator) {
    double out = -1.0;
    FUpperProbability(1, &f, &numerator, &denominator, &out);
    return out;
}

double chiSquareTail(double x, double df) {
    double out = -1.0;
    ChiSquareUpperProbability(1, &x, &df, &out);
    return out;
}

double beta(double a, double b, double x) {
    std::uint32_t flag = 0;
    const double value = IncompleteBeta(a, b, x, flag);
    EXPECT_EQ(flag, x < 0.0 || x > 1.0 ? 1u : 0u);
    return value;
}

} // namespace

// Exact values by R 4.2.2, or by hand where a constant stands.
TEST(Distributions, AgreeWithExactValuesWithinTheirErrors) {
    struct Case {
        const char* name;
        double value, expected, tolerance;
    };
    const Case cases[] = {
        {"gamma 12.5", logGamma(12.5), 18.734347511936448, 3e-9},
        {"gamma 3.5", logGamma(3.5), 1.200973602347074, 1e-14},
        {"gamma 0.5", logGamma(0.5), 0.5 * std::log(std::acos(-1.0)), 1e-15},
        {"gamma 5", logGamma(5), std::log(24.0), 1e-15},
        {"gamma 1", logGamma(1), 0.0, 0.0},
        {"gamma 50", logGamma(50), 144.565743946344867, 1e-12},
        {"lanczos 7.25", LogGammaLanczos(7.25), 7.052185450738540, 3e-11},
        {"erfc 0.3", ComplementaryErrorFunction(0.3), 0.671373240540872551, 1.1e-7},
        {"erfc 2", ComplementaryErrorFunction(2), 0.004677734981047264, 1e-9},
        {"erfc -1", ComplementaryErrorFunction(-1), 1.842700792949714783, 1.1e-7},
        {"F 3", fTail(3, 4, 20), 0.043200998334214105, 8e-9},
        {"F 0.2", fTail(0.2, 4, 20), 0.935396541451106067, 8e-9},
        {"F 4.5", fTail(4.5, 1, 7), 0.071581800337929602, 1e-12},
        {"F 1.1", fTail(1.1, 120, 300), 0.258122226733801086, 8e-9},
        {"t 10", TTwoSidedProbability(2, 10), 0.073388034770740393, 1e-15},
        {"t 7", TTwoSidedProbability(-2.5, 7), 0.040992218585752874, 1e-15},
        {"t 1", TTwoSidedProbability(0.7, 1), 0.611199775571570569, 1e-15},
        {"t 2", TTwoSidedProbability(1.5, 2), 0.272393124891000926, 1e-15},
        {"t 1001", TTwoSidedProbability(3, 1001), 0.002766641763894641, 3e-14},
        {"t 2e6", TTwoSidedProbability(1.96, 2e6), 0.049995928940828750, 5e-13},
        {"inverse 10", TInverse(10, 0.05), 2.228138851986274, 3e-10},
        {"inverse 1", TInverse(1, 0.01), 63.656741162871583, 1e-8},
        {"inverse 3", TInverse(3, 1e-5), 60.396824041587323, 1e-8},
        {"normal 0.3", NormalUpperQuantile(0.3), 0.5244005127080407, 3e-7},
        {"normal 0.2", NormalUpperQuantile(0.8), 0.8416212335729144, 3e-6},
        {"normal 0.025", NormalUpperQuantile(0.025), 1.96, 0.004},
        {"chi 1", chiSquareTail(3.84, 1), 0.05004352124870522, 3e-7},
        {"chi 2", chiSquareTail(5, 2), 0.0820849986238988, 1e-15},
        {"chi 3", chiSquareTail(7, 3), 0.07189777249646515, 3e-7},
        {"chi 6", chiSquareTail(3, 6), std::exp(-1.5) * (1 + 3.0 / 4), 1e-15}, // without the term in 2
        {"chi 100", chiSquareTail(120, 100), 0.0844066810936918, 2e-11},
        {"chi 120", chiSquareTail(130, 120), 0.2510623969766457, 2e-11},
        {"chi 120 low", chiSquareTail(90, 120), 0.9813488653514245, 2e-11},
        {"chi 2e9", chiSquareTail(2e9 + 60000, 2e9), 0.1713905874018414, 2e-9},
    };
    for (const Case& item : cases) EXPECT_NEAR(item.value, item.expected, item.tolerance) << item.name;
}

TEST(Distributions, ReportsDependOnTheseValues) {
    EXPECT_EQ(chiSquareTail(2, 4), std::exp(-1.0));
    EXPECT_EQ(chiSquareTail(6, 5), chiSquareTail(6, 3));
    EXPECT_EQ(logGamma(2.3), logGamma(1.5));
    EXPECT_EQ(logGamma(-3), 0.0);
    EXPECT_NEAR(logGamma(10) - std::log(362880.0), -7.88e-9, 1e-11);
    EXPECT_NEAR(NormalUpperQuantile(0.001) - 3.090232, -0.12243, 1e-5);
    // Only the factor before the continued fraction, for a = b = 1: x (1 - x).
    EXPECT_NEAR(beta(1, 1, 0.25), 0.1875, 1e-9);
    EXPECT_NEAR(beta(1, 1, 0.75), 0.8125, 1e-9);
    EXPECT_EQ(beta(1, 2, 1), 1.0);
    EXPECT_EQ(beta(0, 0.5, NAN), 1.0);
    EXPECT_EQ(beta(1, 1, -0.1), 0.0);
    EXPECT_EQ(beta(1, 1, 1.1), 0.0);
}

TEST(Distributions, Limits) {
    for (double df : {0.0, 1.0, 2.0, 1e300}) EXPECT_EQ(TTwoSidedProbability(0, df), 1.0);
    for (double df : {1.0, 2.0, 3.0, 1e9}) EXPECT_EQ(TTwoSidedProbability(INFINITY, df), 0.0);
    EXPECT_EQ(TTwoSidedProbability(1e200, 2), 0.0);
    for (double alpha : {0.0, 1.0, -1.0, 2.0}) EXPECT_EQ(TInverse(5, alpha), 0.0);
    EXPECT_NEAR(TInverse(1e300, 0.05), 1.959963984540054, 1e-9);
    for (double f : {0.0, -1.0}) EXPECT_EQ(fTail(f, 3, 9), 1.0);
    for (double f : {1e6, 1e308, static_cast<double>(INFINITY)}) EXPECT_EQ(fTail(f, 5, 30), 0.0);
    EXPECT_EQ(fTail(107.465, 16, 5162), 0.0); // the series overflows
    EXPECT_EQ(chiSquareTail(0, 3), 1.0);
    EXPECT_EQ(chiSquareTail(9, 0.5), 1.0);
    EXPECT_EQ(chiSquareTail(INFINITY, 3), 0.0);
    EXPECT_EQ(NormalUpperQuantile(0.025), NormalUpperQuantile(0.975));
    EXPECT_EQ(NormalUpperQuantile(0.5), 0.0);
    EXPECT_FALSE(std::signbit(NormalUpperQuantile(0.5)));
}

// Any doubles end, and a tail is a probability or not a number.
TEST(Distributions, EndForAnyDoubles) {
    const double odd[] = {NAN, INFINITY, -INFINITY, 0.0, -0.0, 5e-324, -1.0,  1e-20, 0.5,    1.0,
                          2.0, 101.0,    1e5,       1e7, 1e16, 2e16,   1e155, 1e300, -1e300, 1.7e308};
    const auto check = [](double tail) {
        EXPECT_TRUE(std::isnan(tail) || (tail > -1e-9 && tail < 1 + 1e-9)) << tail;
    };
    for (double a : odd) {
        logGamma(a);
        LogGammaLanczos(a);
        NormalUpperQuantile(a);
        check(ComplementaryErrorFunction(a) / 2.0);
        for (double b : odd) {
            check(chiSquareTail(a, b));
            check(TTwoSidedProbability(a, b));
            EXPECT_FALSE(TInverse(a, b) < 0.0 && a > 0.0);
            for (double c : odd) {
                beta(a, b, c);
                fTail(a, b, c);
                double out = 0.0;
                ChiSquareSeries(out, a, b, c);
                check(out);
            }
        }
    }
    EXPECT_TRUE(std::isnan(fTail(NAN, 2, 2)) && std::isnan(chiSquareTail(NAN, 2)) &&
                std::isnan(logGamma(NAN)));
}
