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
