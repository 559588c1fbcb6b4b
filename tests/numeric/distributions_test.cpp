#include "numeric/distributions.h"

#include <gtest/gtest.h>

#include <cmath>

#include "numeric/beta.h"
#include "numeric/gamma.h"

namespace {

constexpr double notANumber = NAN, infinite = INFINITY;
constexpr auto& tTail = TTwoSidedProbability;

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

double chiTail(double x, double df) {
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

TEST(Distributions, Values) {
    const struct {
        double value, expected, error;
    } cases[] = {
        // clang-format off
        // Exact values (R 4.2.2, or by hand), within the error that the function states.
        {logGamma(12.5), 18.7343475119364, 3e-9}, {logGamma(3.5), 1.20097360234707, 1e-14},
        {logGamma(5), std::log(24.0), 1e-15},
        {ComplementaryErrorFunction(0.3), 0.671373240540873, 1.1e-7},
        {ComplementaryErrorFunction(-1), 1.842700792949715, 1.1e-7},
        {fTail(3, 4, 20), 0.0432009983342141, 8e-9}, {fTail(0.2, 4, 20), 0.935396541451106, 8e-9},
        {tTail(2, 10), 0.0733880347707404, 1e-15}, {tTail(-2.5, 7), 0.0409922185857529, 1e-15},
        {tTail(1.96, 2e6), 0.0499959289408288, 5e-13},
        {TInverse(10, 0.05), 2.22813885198627, 3e-10}, {TInverse(1, 0.01), 63.6567411628716, 1e-8},
        {TInverse(1e300, 0.05), 1.95996398454005, 3e-10}, {NormalUpperQuantile(0.8), 0.841621233572914, 3e-6},
        {chiTail(3.84, 1), 0.0500435212487052, 3e-7}, {chiTail(7, 3), 0.0718977724964652, 3e-7},
        {chiTail(120, 100), 0.0844066810936918, 2e-11}, {chiTail(90, 120), 0.981348865351425, 2e-11},
        {chiTail(2e9 + 60000, 2e9), 0.171390587401841, 2e-9},
        // Values that are kept although they are not exact, by hand.
        {chiTail(2, 4), std::exp(-1.0), 1e-15}, {chiTail(6, 5), chiTail(6, 3), 0},
        {chiTail(3, 6), std::exp(-1.5) * 1.75, 1e-15},
        {logGamma(2.3), logGamma(1.5), 0}, {NormalUpperQuantile(0.001), 3.090232 - 0.12243, 1e-5},
        {beta(1, 1, 0.25), 0.25 * 0.75, 1e-9}, {beta(1, 1, 0.75), 1 - 0.25 * 0.75, 1e-9},
        {beta(0, 0.5, notANumber), 1, 0}, {beta(1, 1, -0.1), 0, 0},
        // clang-format on
    };
    for (const auto& one : cases) EXPECT_NEAR(one.value, one.expected, one.error) << &one - cases;
    // Limits; the series of the first overflows.
    for (double zero : {fTail(882, 7, 6218), fTail(1e308, 5, 30), tTail(infinite, 3), tTail(1e200, 2),
                        TInverse(5, 0), TInverse(5, 1), chiTail(infinite, 3), NormalUpperQuantile(0.5)})
        EXPECT_EQ(std::copysign(1.0, zero) + zero, 1.0);
    for (double one : {fTail(0, 3, 9), tTail(0, 0), tTail(0, 5), chiTail(0, 3), chiTail(9, 0.5)})
        EXPECT_EQ(one, 1.0);
    for (double tail : {fTail(notANumber, 2, 2), chiTail(notANumber, 2), logGamma(notANumber)})
        EXPECT_TRUE(std::isnan(tail));
}

TEST(Distributions, EndForAnyDoubles) {
    const double odd[] = {notANumber, infinite, -infinite, 0,   -0.0, 5e-324, -1,    1e-20, 0.5,    1,
                          2,          101,      1e5,       1e7, 1e16, 2e16,   1e155, 1e300, -1e300, 1.7e308};
    for (double a : odd)
        for (double b : odd) {
            for (double tail : {chiTail(a, b), TTwoSidedProbability(a, b), ComplementaryErrorFunction(a) / 2})
                EXPECT_FALSE(tail < -1e-11 || tail > 1) << a << " " << b;
            EXPECT_FALSE(a > 0 && TInverse(a, b) < 0) << a << " " << b;
            for (double c : odd) {
                double series = 0.0;
                ChiSquareSeries(series, a, b, c);
                EXPECT_FALSE(series < 0 || fTail(a, b, c) < 0) << a << " " << b << " " << c;
            }
        }
}
