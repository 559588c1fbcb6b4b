#include "numeric/least_squares.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/failing_allocations.h"

namespace {

// A set of tests/numeric/regressions.tsv; the purpose stands first in each row.
struct CertifiedSet {
    std::string name;
    int powers = 0;
    double residual = 0.0, determination = 0.0;
    std::vector<double> estimates = {}, errors = {}, values = {};
    Index samples = 0, k = 0;
};

std::vector<CertifiedSet> readSets() {
    std::vector<CertifiedSet> sets;
    for (const Case& row : readCases("numeric/regressions.tsv")) {
        if (row[0] == "set")
            sets.push_back({row[1], std::stoi(row[2]), std::stod(row[3]), std::stod(row[4])});
        CertifiedSet& set = sets.back();
        if (row[0] == "b") {
            set.estimates.push_back(std::stod(row[1]));
            set.errors.push_back(std::stod(row[2]));
        } else if (row[0] == "y") {
            set.values.push_back(std::stod(row[1]));
            set.k = static_cast<Index>(set.estimates.size()) - 1;
            for (int v = 1; v <= set.k; ++v)
                set.values.push_back(set.powers ? std::pow(std::stod(row[2]), v) : std::stod(row.at(v + 1u)));
            ++set.samples;
        }
    }
    return sets;
}

std::vector<std::int32_t> variablesFrom(std::int32_t first, Index count) {
    std::vector<std::int32_t> variables;
    while (std::ssize(variables) < count) variables.push_back(first++);
    return variables;
}

double digits(double value, double certified) {
    return -std::log10(std::fabs(value / certified - 1.0) + 1e-16);
}

} // namespace

TEST(LeastSquares, HasTheDigitsOfCertifiedRegressions) {
    // Of coefficients and standard errors.
    const double least[][2] = {{13, 13}, {7, 7}, {7, 9.5}};
    const auto sets = readSets();
    ASSERT_EQ(sets.size(), std::size(least));
    for (const CertifiedSet& set : sets) {
        const auto& [ofCoefficients, ofErrors] = least[&set - sets.data()];
        const auto variables = variablesFrom(1, set.k);
        LeastSquares fit;
        ASSERT_EQ(
            fitLeastSquares({set.values.data(), set.samples, set.k + 1, variables.data(), set.k, 0}, fit),
            success);
        const double variance = fit.residualSum / static_cast<double>(set.samples - set.k - 1);
        EXPECT_GE(digits(std::sqrt(variance), set.residual), ofErrors) << set.name;
        EXPECT_GE(digits(1.0 - fit.residualSum / fit.totalSum, set.determination), ofErrors) << set.name;
        EXPECT_GE(digits(fit.constant, set.estimates[0]), ofCoefficients) << set.name;
        for (Index j = 0; j < set.k; ++j) {
            const auto at = static_cast<std::size_t>(j) + 1;
            EXPECT_GE(digits(fit.coefficients[j], set.estimates[at]), ofCoefficients) << set.name << ' ' << j;
            EXPECT_GE(digits(std::sqrt(fit.inverse(j, j) * variance), set.errors[at]), ofErrors) << set.name;
        }
        // The residuals are those of the coefficients.
        double residual = set.values[0] - fit.constant;
        for (Index j = 0; j < set.k; ++j)
            residual -= fit.coefficients[j] * set.values[static_cast<std::size_t>(j) + 1];
        EXPECT_NEAR(fit.residuals[0], residual, 1e-7 * std::sqrt(fit.residualSum)) << set.name;
    }
}

TEST(LeastSquares, SmallFits) {
    // y = 1 + 2 a - b, and two columns that do not serve; c is a sum of a and b but for its rounding.
    double values[][6] = {{1e3, 2e3, 0, 3, 1},
                          {1e3, 7e3, 0, 3, 1},
                          {2e3, 1e3, 0, 3, NAN},
                          {8e3, 1.5, 0, 3, 4},
                          {2.5, 4e3, 0, 3, 1}};
    constexpr Index samples = 5;
    for (auto& [a, b, c, constant, gap, y] : values) {
        c = 0.1 * a + 0.7 * b;
        y = 1.0 + 2.0 * a - b;
    }
    const auto fitOf = [&](std::vector<std::int32_t> variables, Index count, LeastSquares& fit) {
        return fitLeastSquares({values[0], count, 6, variables.data(), std::ssize(variables), 5}, fit);
    };
    LeastSquares fit;
    ASSERT_EQ(fitOf({1, 0}, samples, fit), success);
    EXPECT_NEAR(fit.coefficients[0], -1.0, 1e-15);
    EXPECT_NEAR(fit.coefficients[1], 2.0, 1e-15);
    EXPECT_NEAR(fit.constant, 1.0, 1e-12);
    EXPECT_LT(fit.residualSum, 1e-20);
    ASSERT_EQ(fitOf({}, samples, fit), success);
    EXPECT_DOUBLE_EQ(fit.residualSum, fit.totalSum);
    EXPECT_EQ(fitOf({0, 1}, 3, fit), success);
    for (const auto& [variables, count] : {std::pair{std::vector{0, 1, 2}, samples},
                                           {{3}, samples},
                                           {{4}, samples},
                                           {{0, 0}, samples},
                                           {{0, 1}, 2}})
        EXPECT_EQ(fitOf(variables, count, fit), singularMatrix) << variables.size() << ' ' << count;
    values[0][5] = INFINITY;
    EXPECT_EQ(fitOf({0}, samples, fit), singularMatrix);
    values[0][5] = 1.0;
    EXPECT_EQ(failEachAllocation([&] { return fitOf({0, 1}, samples, fit); }), 13);
}
