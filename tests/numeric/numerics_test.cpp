#include "numeric/numerics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "numeric/wide.h"
#include "tests/support/cases.h"

namespace {

constexpr double notANumber = NAN, infinite = INFINITY;
constexpr double error = std::numeric_limits<Wide>::digits > 53 ? 1e-14 : 3e-13;

double fTailOf(double f, double numerator, double denominator) {
    double out = -1.0;
    textbookNumerics.fTails(1, &f, &numerator, &denominator, &out);
    return out;
}

double chiSquareTailOf(double x, double df) {
    double out = -1.0;
    textbookNumerics.chiSquareTails(1, &x, &df, &out);
    return out;
}

double rankTailOf(double r, double df) {
    double out = -1.0;
    EXPECT_EQ(textbookNumerics.rankCorrelationTail(r, df, 1.0, out), success);
    return out;
}

double valueOf(const std::string& name, double a, double b, double c) {
    if (name == "normal") return textbookNumerics.normalTwoSidedTail(a);
    if (name == "normal quantile") return textbookNumerics.normalUpperQuantile(a);
    if (name == "chi-square") return chiSquareTailOf(a, b);
    if (name == "f") return fTailOf(a, b, c);
    if (name == "t") return textbookNumerics.tTwoSidedTail(a, b);
    if (name == "t quantile") return textbookNumerics.tTwoSidedQuantile(a, b);
    return rankTailOf(a, b);
}

// Tails of ascending values: none is larger than the one before, but for rounding.
void expectFalling(const std::vector<double>& tails) {
    for (std::size_t i = 0; i < tails.size(); ++i) {
        EXPECT_GE(tails[i], 0.0) << i;
        EXPECT_LE(tails[i], i > 0 ? tails[i - 1] * (1.0 + 1e-15) : 1.0) << i;
    }
}

} // namespace

TEST(TextbookNumerics, DistributionsHaveTheDigitsOfTheTable) {
    for (const Case& one : readCases("numeric/distributions.tsv")) {
        const double a = std::stod(one[1]), b = std::stod(one[2]), c = std::stod(one[3]);
        const double expected = std::stod(one[4]);
        EXPECT_LE(std::fabs(valueOf(one[0], a, b, c) / expected - 1.0), error)
            << one[0] << ' ' << a << ' ' << b;
    }
}

TEST(TextbookNumerics, DistributionsEndAndFall) {
    const std::vector<double> degrees = {1e-300, 0.01, 1,    2,    3.5,   30,      998,
                                         1001,   1e5,  1e10, 1e25, 1e300, infinite};
    for (const double df : degrees) {
        std::vector<double> chiSquares, ts, ranks;
        for (const double z : {-40.0, -6.0, -1.0, -0.01, 0.0, 0.01, 1.0, 3.0, 6.0, 20.0, 40.0})
            chiSquares.push_back(chiSquareTailOf(df + z * std::sqrt(2.0 * df), df));
        for (const double t : {0.0, 1e-200, 1e-9, 0.3, 1.0, 1.001, 9.0, 50.0, 1e10, 1e300, infinite})
            ts.push_back(textbookNumerics.tTwoSidedTail(t, df));
        for (const double r : {0.0, 1e-9, 0.1, 0.6, 0.999, 1.0, 1.0 + 1e-15})
            ranks.push_back(rankTailOf(-r, df));
        expectFalling(ts);
        if (std::isfinite(df)) {
            expectFalling(chiSquares);
            expectFalling(ranks);
        }
        EXPECT_EQ(ts.front(), 1.0);
        EXPECT_EQ(ts.back() + ranks[5] + ranks[6] + chiSquareTailOf(infinite, df), 0.0);
        for (const double other : degrees) {
            std::vector<double> fs;
            for (const double f :
                 {-1.0, 0.0, 1e-320, 1e-9, 0.5, 0.999, 1.0, 1.001, 2.0, 70.0, 1e12, 1e308, infinite})
                fs.push_back(fTailOf(f, df, other));
            expectFalling(fs);
            EXPECT_EQ(fs[1] - fs.back(), 1.0);
        }
    }
    for (const double alpha : {0.0, 1.0, -3.0}) EXPECT_EQ(textbookNumerics.tTwoSidedQuantile(5, alpha), 0.0);
    for (const double p : {0.0, 1.0}) EXPECT_EQ(textbookNumerics.normalUpperQuantile(p), infinite);
    EXPECT_EQ(chiSquareTailOf(3, 0), 1.0);
    for (const double value :
         {fTailOf(notANumber, 1, 2), fTailOf(2, notANumber, 2), fTailOf(2, 1, 0),
          chiSquareTailOf(notANumber, 2), chiSquareTailOf(2, notANumber), rankTailOf(notANumber, 3),
          textbookNumerics.tTwoSidedTail(2, -1), textbookNumerics.tTwoSidedTail(notANumber, 2),
          textbookNumerics.tTwoSidedQuantile(notANumber, 0.1),
          textbookNumerics.tTwoSidedQuantile(2, notANumber), textbookNumerics.normalTwoSidedTail(notANumber),
          textbookNumerics.normalUpperQuantile(-0.1)})
        EXPECT_TRUE(std::isnan(value));
}

// By hand: the deviations of the first column are -6, -3, 3 and 6, and those of the second are twice as
// large.
TEST(TextbookNumerics, MomentsFarFromZero) {
    const double values[] = {1e15 + 4, 8, 3, 1e15 + 7, 14, 3, 1e15 + 13, 26, 3, 1e15 + 16, 32, 3};
    MomentMatrices moments;
    ASSERT_EQ(moments.allocate(3), success);
    EXPECT_EQ(textbookNumerics.moments(values, 4, 3, moments), success);
    EXPECT_EQ(moments.means[0], 1e15 + 10);
    EXPECT_EQ(moments.covariance(0, 0), 22.5);
    EXPECT_EQ(moments.covariance(0, 1), 45.0);
    EXPECT_EQ(moments.sds[1], std::sqrt(90.0));
    EXPECT_EQ(moments.correlation(1, 0), 1.0);
    EXPECT_TRUE(std::isnan(moments.correlation(2, 2)));
    EXPECT_TRUE(classicNumerics.anyConstant(moments));
    EXPECT_TRUE(textbookNumerics.anyConstant(moments));
    moments.sds[2] = 1e-8;
    EXPECT_TRUE(textbookNumerics.anyConstant(moments)); // the first: 4.7 of 1e15
    moments.means[0] = 1e9;
    EXPECT_FALSE(textbookNumerics.anyConstant(moments));
    EXPECT_TRUE(classicNumerics.anyConstant(moments));
}
