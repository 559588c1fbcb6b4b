#include <cstring>

#include "analysis/basic/regression/prediction.h"
#include "tests/support/regression_run.h"

namespace {

using Numbers = std::vector<double>;

constexpr RegressionOptions allVariables = {0, 0, 2.0, 1.5, 0.05};

struct TextbookRun : RegressionRun {
    explicit TextbookRun(const std::string& source, std::int32_t method = 0) : RegressionRun(source) {
        run.numerics = &textbookNumerics;
        options(1) = options(41) = allVariables;
        options(1).method = method;
    }
};

// y = 2 x + 3 x^2 + e with x = m - 3 .. m + 3, so large that x and x^2 are all but one line. e is the
// orthogonal polynomial of degree 3 of seven points (Fisher and Yates 1938): it changes no coefficient, and
// its squares sum to 6. By d = x - m and q = d^2 - 4, which are orthogonal with squares of sum 28 and 84, the
// variance of a prediction is s2 (1 + 1/7 + d^2/28 + q^2/84), s2 = 6 / 4.
constexpr double m = 100004;
constexpr double residualVariance = 1.5;
constexpr double t = 2.7764451051977987; // 5 %, 4 degrees of freedom; by R 4

double varianceAt(double d) {
    const double q = d * d - 4;
    return residualVariance * (1 + 1.0 / 7 + d * d / 28 + q * q / 84);
}

std::string parabola() {
    const Numbers e = {-1, 1, 1, 0, -1, -1, 1};
    Numbers y, x, square;
    for (const double rest : e) {
        const double at = m - 3 + static_cast<double>(x.size());
        y.push_back(2 * at + 3 * at * at + rest);
        x.push_back(at);
        square.push_back(at * at);
    }
    return fileOf({y, x, square});
}

} // namespace

TEST(TextbookRegression, KeepsItsDigitsWhereColumnsAreNearlyDependent) {
    for (const int method : {0, 2}) { // x^2 has F = 504, x itself F = 5.6e-9: it leaves the model
        TextbookRun run(parabola(), method);
        ASSERT_EQ(run.runKind(1), success);
        EXPECT_STREQ(run.run.deviations, "");
        EXPECT_TRUE(run.shows("multiple regression analysis statistics\n-- textbook numerics\n"));
        if (method == 2) {
            EXPECT_EQ(run.model().count, 1);
            continue;
        }
        const double errors[] = {std::sqrt(residualVariance * (1.0 / 28 + 4 * m * m / 84)),
                                 std::sqrt(residualVariance / 84)};
        for (const int j : {0, 1}) {
            const Numbers row = run.row("\tpartial regression", j == 0 ? "v2" : "v3");
            const double b = 2.0 + j;
            expectRelative(row[0], b, 1e-5);
            expectRelative(row[1], errors[j], 1e-9);
            expectRelative(run.row("\tstandard partial", j == 0 ? "v2" : "v3")[1],
                           b / std::sqrt(b * b + 4 * errors[j] * errors[j]), 1e-5);
        }
        // In the middle there is no residual; the interval is the same at a prediction.
        const Numbers row = run.sample(3);
        EXPECT_EQ(row[4], 0.0);
        PredictionEntry entry;
        Prediction prediction;
        ASSERT_EQ(startPrediction(run.run, entry), success);
        for (const double d : {0.0, 10.0}) {
            entry.values[0] = m + d;
            entry.values[1] = (m + d) * (m + d);
            ASSERT_EQ(computePrediction(run.run, entry, prediction), success);
            expectRelative(prediction.supremum - prediction.infimum, 2 * t * std::sqrt(varianceAt(d)), 1e-5);
            expectRelative(prediction.median, 2 * entry.values[0] + 3 * entry.values[1], 1e-14);
        }
    }
}

// Correlations of 0: R2 = 0, adjusted 1 - 5/4, re-adjusted 1 - 5 (6 + 1 + 1) / (7 4).
TEST(TextbookRegression, AdjustsBelowZero) {
    TextbookRun run("label,y,x\na,1,1\nb,2,-1\nc,1,-1\nd,2,1\ne,1.5,0\nf,1.5,0.5\n");
    ASSERT_EQ(run.runKind(1), success);
    const Numbers model = run.row("m.c.determination", "model value");
    EXPECT_NEAR(model[0], 0, 1e-12);
    EXPECT_NEAR(model[3], 1, 1e-7);
    EXPECT_EQ(run.row("model value", "adjusted"), (Numbers{-0.25, 0}));
    EXPECT_EQ(run.row("model value", "re-adjusted"), (Numbers{-0.428571428571, 0}));
    EXPECT_TRUE(run.shows("-- textbook numerics"));

    run.run.numerics = &classicNumerics;
    ASSERT_EQ(run.runKind(1), success);
    EXPECT_NE(std::strstr(run.run.deviations, "adjusted"), nullptr);
}

TEST(TextbookRegression, RefusesByRankAndByRelativeDeviation) {
    const Numbers y = {1, 3, 2, 5, 4, 7, 6, 9}, x = {2, 1, 4, 3, 8, 5, 7, 9},
                  likeX = {2, 2, 4, 3, 8, 6, 7, 9};
    const auto times = [](Numbers values, double factor, double shift) {
        for (double& value : values) value = factor * value + shift;
        return values;
    };
    const struct {
        std::string text;
        std::int32_t method;
        ErrorCode code;
    } cases[] = {
        {fileOf({times(y, 1e-6, 0), times(x, 1e-9, 0)}), 0, success}, // deviations of 2e-6 and 3e-9
        {fileOf({y, times(x, 1e-9, 3)}), 0, illegalData},             // 9e-10 of the mean
        {fileOf({y, Numbers(8, 0.0)}), 0, illegalData},
        {fileOf({y, x, x}), 0, singularMatrix},
        {fileOf({y, x, times(x, 3, 1)}), 2, singularMatrix},
        {fileOf({y, x, times(x, 3, 1)}), 4, singularMatrix},
        {fileOf({likeX, x, x}), 1, success}, // the copy stays out
        {fileOf({y, x, likeX, {2.7, 2.2, 5.1, 3.9, 9.2, 6.5, 7.3, 9.9}}), 0, success},
        {fileOf({y, x, likeX, {2.1, 1.7, 4.1, 3.1, 8.1, 5.7, 7.1, 9.1}}), 0,
         singularMatrix}, // 0.4 x + 0.6 likeX + 0.1
    };
    for (const auto& each : cases) {
        TextbookRun run(each.text, each.method);
        EXPECT_EQ(run.runKind(1), each.code) << each.text << each.method;
    }
}

TEST(TextbookRegression, FailsWithCode4AndPredictsAfterARunWithoutInterval) {
    for (const int method : {0, 2}) {
        for (const std::int32_t kind : {1, 41}) {
            TextbookRun run("stackloss.csv", method);
            run.choosePurpose("stack.loss");
            run.options(41).method = method;
            run.run.options.settings.expressGraph = 0;
            run.failAllocations(firstAnalysisCommand + kind);
            run.options(kind).alpha = 0.05;
            ASSERT_EQ(run.runKind(kind), success);
            const Numbers row = run.sample(4);
            PredictionEntry entry;
            run.options(kind).alpha = 0.0;
            ASSERT_EQ(run.runKind(kind), success);
            ASSERT_EQ(startPrediction(run.run, entry), success);
            for (Index v = 0; v < entry.values.size(); ++v) entry.values[v] = run.value(4, v);
            Prediction prediction;
            entry.alpha = 0.05;
            EXPECT_GT(failEachAllocation([&] { return computePrediction(run.run, entry, prediction); }), 0);
            EXPECT_NEAR(prediction.infimum, row[2], 1e-4);
            EXPECT_NEAR(prediction.supremum, row[3], 1e-4);
        }
    }
}
