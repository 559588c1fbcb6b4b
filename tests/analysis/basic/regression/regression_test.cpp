#include "analysis/basic/regression/regression.h"

#include <numeric>
#include <random>

#include "analysis/basic/regression/least_squares_regression.h"
#include "analysis/basic/regression/stepwise_selection.h"
#include "tests/support/regression_run.h"

namespace {

using Numbers = std::vector<double>;

// The engine on a file's own columns, with the numbers of an independent computation.
struct Engine : RegressionRun {
    Numbers expected;
    MomentMatrices moments;

    Engine(const std::string& name, const std::string& purpose, std::istream& numbers)
        : RegressionRun(name, purpose) {
        for (double value; numbers >> value;) expected.push_back(value);
        EXPECT_EQ(reorderWorkingBySelection(run.data), success);
        const DataMatrix& working = run.data.working;
        EXPECT_EQ(moments.allocate(working.variables), success);
        MeanCovarianceCorrelation(working.values.data(), working.samples, working.variables, moments);
    }
    RegressionData data() const {
        return {run.data.working.values.data(), run.data.working.samples, run.data.working.variables,
                moments};
    }
};

template <class Use> void forEachLine(const char* name, int count, Use use) {
    std::ifstream file(std::string(OMBRIVANTEL_SOURCE_DIR "/tests/analysis/basic/regression/") + name);
    for (std::string line, data, purpose; std::getline(file, line);) {
        if (line[0] == ';') continue;
        SCOPED_TRACE(line);
        std::istringstream words(line);
        words >> data >> purpose;
        Engine engine(data, purpose, words);
        use(engine);
        --count;
    }
    EXPECT_EQ(count, 0);
}

} // namespace

TEST(Regression, AgreesWithLeastSquares) {
    const auto compare = [](Engine& engine, const Numerics& numerics) {
        RegressionFit fit;
        const std::int32_t k = engine.run.data.working.variables - 1;
        ASSERT_EQ(fit.allocate(engine.run.data.working.samples, k), success);
        std::iota(fit.variables.begin(), fit.variables.begin() + k, Index{0});
        ASSERT_EQ(numerics.textbook ? fitByLeastSquares(engine.frontend, numerics, engine.data(), 0.05, fit)
                                    : fitByCorrelations(engine.frontend, engine.data(), 0.05,
                                                        DeterminantTest::refuseNegative, fit),
                  success);
        Numbers actual = {fit.constant};
        actual.insert(actual.end(), fit.coefficients.begin(), fit.coefficients.end());
        actual.insert(actual.end(), fit.errors.begin(), fit.errors.end());
        const double prediction = fit.predictions[0], halfWidth = fit.halfWidths[0];
        actual.insert(actual.end(), {fit.determinations[0], fit.determinations[1], fit.fValues[k], prediction,
                                     prediction - halfWidth, prediction + halfWidth});
        ASSERT_EQ(actual.size() + 1, engine.expected.size());
        for (std::size_t i = 0; i < actual.size(); ++i) expectRelative(actual[i], engine.expected[i], 1e-9);
        // A residual has lost the digits that measure and prediction share.
        EXPECT_NEAR(fit.standardizedResiduals[0], engine.expected.back(), 1e-8);

        const double n = engine.run.data.working.samples, rest = 1 - fit.determinations[0];
        expectRelative(fit.determinations[2], 1 - rest * (n - 1) * (n + k + 1) / ((n + 1) * (n - k - 1)),
                       1e-12);
        for (Index j = 0; j < k; ++j) {
            const double t = fit.coefficients[j] / fit.errors[j];
            expectRelative(fit.fValues[j], t * t, 1e-10);
            expectRelative(fit.partial[j], t / std::sqrt(t * t + n - k - 1), 1e-10);
            expectRelative(fit.standardized[j] * engine.moments.sds[k],
                           fit.coefficients[j] * engine.moments.sds[j], 1e-10);
        }
    };
    forEachLine("least_squares.txt", 7, [&](Engine& engine) {
        compare(engine, classicNumerics);
        compare(engine, textbookNumerics);
    });
}

TEST(StepwiseSelection, TakesTheStepsOfAnIndependentOne) {
    const auto compare = [](Engine& engine, const Numerics& numerics, const UpdateRule& rule) {
        const Numbers& expected = engine.expected;
        StepwiseSelection found;
        ASSERT_EQ(found.allocate(engine.run.data.working.variables), success);
        ASSERT_EQ(selectVariables(numerics, engine.data(),
                                  {static_cast<std::int32_t>(expected[0]),
                                   static_cast<std::int32_t>(expected[1]), expected[2], expected[3], 0},
                                  found, {}, rule),
                  success);
        Numbers actual(expected.begin(), expected.begin() + 4);
        actual.push_back(static_cast<double>(found.count));
        actual.insert(actual.end(), found.variables.begin(), found.variables.begin() + found.count);
        for (const SelectionStep* step = found.steps.begin(); step < found.steps.begin() + found.stepCount;
             ++step) {
            actual.insert(actual.end(), {static_cast<double>(step->variable), static_cast<double>(step->mark),
                                         step->determination, step->f, step->aic});
        }
        ASSERT_EQ(actual.size(), expected.size());
        for (std::size_t i = 0; i < actual.size(); ++i)
            EXPECT_NEAR(actual[i], expected[i], 1e-8 * (1 + std::fabs(expected[i]))) << i;
    };
    forEachLine("stepwise_selections.txt", 56, [&](Engine& engine) {
        for (const Numerics* numerics : {&classicNumerics, &textbookNumerics}) {
            compare(engine, *numerics, {});
            compare(engine, *numerics, {.smallModel = 0}); // by updates from the first step on
        }
    });
}

// What is printed of the steps, on columns that depend on the one before them but for `noise`, 0 for copies,
// or not at all. Dependent columns need inverses in between, the others next to none.
TEST(StepwiseSelection, PrintsTheSameByUpdatesAsByInverses) {
    std::mt19937 random(5);
    std::normal_distribution<double> normal;
    const auto print = [](const RegressionData& data, const RegressionOptions& options, bool updates) {
        StepwiseSelection found;
        EXPECT_EQ(found.allocate(data.variables), success);
        std::string text = std::to_string(
            static_cast<int>(selectVariables(classicNumerics, data, options, found, {}, {updates, 0})));
        for (Index k = 0; k < found.stepCount; ++k) {
            const SelectionStep& step = found.steps[k];
            char line[256];
            std::snprintf(line, sizeof line, "\n%td %d %.6f %.6f %.6f", step.variable,
                          static_cast<int>(step.mark), step.determination, step.f, step.aic);
            text += line;
        }
        return text;
    };
    long long inversions[2] = {};
    for (int round = 0; round < 240; ++round) {
        const double noise = round % 3 == 0 ? INFINITY : round % 12 == 1 ? 0.0 : std::pow(10.0, -round % 7);
        const std::int32_t p = 4 + round % 23, n = 3 * p;
        MomentMatrices moments;
        ASSERT_EQ(moments.allocate(p), success);
        Numbers values;
        for (int i = 0; i < n * p; ++i) {
            const bool depends = std::isfinite(noise) && i % p % 4 == 2;
            values.push_back(depends ? values.back() + noise * normal(random) : normal(random));
        }
        for (int i = 0; i < n; ++i) values[i * p + p - 1] += values[i * p] + 0.3 * values[i * p + 1];
        MeanCovarianceCorrelation(values.data(), n, p, moments);
        const RegressionData data = {values.data(), n, p, moments};
        const RegressionOptions options = {1 + round % 4, round / 4 % 2, 1.5 - round % 5 * 0.3, 0.2, 0};
        std::string printed[2];
        for (const bool updates : {false, true}) {
            failAllocation(0);
            printed[updates] = print(data, options, updates);
            inversions[updates] += allocationCount();
        }
        EXPECT_EQ(printed[1], printed[0]) << round;
    }
    EXPECT_LT(inversions[1], 0.6 * static_cast<double>(inversions[0]));
}

// Correlations of 1/2 and 3/4 with the purpose variable and none with each other: in binary F is exact.
TEST(StepwiseSelection, MovesAVariableWhoseFIsTheLimit) {
    const std::string text =
        fileOf({{8, 2, 0, -2, 2, 0, -4, -6}, {1, 1, 1, 1, -1, -1, -1, -1}, {1, 1, -1, -1, 1, 1, -1, -1}});
    const double limit = 5 * 0.25 / 0.1875; // of the first variable beside the second
    const struct {
        RegressionOptions options;
        Index count;
    } cases[] = {
        {{3, 1, limit, 0, 0.05}, 2},
        {{3, 1, std::nextafter(limit, 9.0), 0, 0.05}, 1},
        {{4, 1, 9, limit, 0.05}, 1},
        {{4, 1, 9, std::nextafter(limit, 0.0), 0.05}, 2},
    };
    for (const auto& each : cases) {
        RegressionRun run(text);
        run.options(1) = each.options;
        ASSERT_EQ(run.runKind(1), success);
        EXPECT_EQ(run.model().count, each.count) << &each - cases;
    }
}

TEST(MultipleRegression, RefusesBadData) {
    const Numbers y = {1, 3, 2, 5, 4, 7, 6, 9}, x = {2, 1, 4, 3, 8, 5, 7, 9};
    const auto file = [&](double first) { return fileOf({y, x, {first, 1, 1, 1, 1, 1, 1, 1}}); };
    const RegressionOptions all = {0, 0, 2, 1, 0.05};
    const struct {
        std::string text;
        RegressionOptions options;
        ErrorCode code;
    } cases[] = {
        {fileOf({y}), all, noEffectiveVariable},
        {"label,y,x\na,1,1\nb,2,1\nc,3,1e999\nd,4,1\ne,4,1\n", all, notFinite},
        {file(1e300), all, notFinite}, // its square
        {file(1.0), all, illegalData},
        {file(1.003), all, illegalData}, // a deviation of 0.00099
        {file(1.0031), all, success},    // a deviation of 0.00103
        {file(9.0), {0, 0, 2, 1, -1.0}, success},
        {file(9.0), {2, 1, INFINITY, NAN, NAN}, success},
        {file(9.0), {7, -3, 2, 1, INFINITY}, success}, // settings of unknown origin
        // A copied column: its determinant is 0, not negative, so values pass that are not finite; stepwise
        // it stays out.
        {fileOf({y, x, x}), all, success},
        {fileOf({y, x, x}), {1, 1, 1.1, 1, 0.05}, success},
    };
    for (const auto& each : cases) {
        RegressionRun run(each.text);
        run.options(1) = each.options;
        EXPECT_EQ(run.runKind(1), each.code) << each.text;
        EXPECT_EQ(run.model().kind, each.code == success ? 1 : FittedModel::none);
        if (&each < std::end(cases) - 2) continue;
        EXPECT_EQ(run.model().count, each.options.method == 0 ? 2 : 1);
        EXPECT_EQ(std::isfinite(run.model().coefficients[0]), each.options.method == 1);
    }
}

// A column that explains next to nothing has negative adjusted values.
TEST(MultipleRegression, ClampsAdjustedValuesAndBlanksIntervals) {
    RegressionRun run("label,y,x\na,1,1\nb,2,-1\nc,1,-1\nd,2,1\ne,1.5,0\nf,1.5,0.5\n");
    run.options(1) = {0, 0, 2, 1, 0.0};
    ASSERT_EQ(run.runKind(1), success);
    EXPECT_EQ(run.row("model value", "adjusted"), (Numbers{0, 0}));
    EXPECT_EQ(run.row("model value", "re-adjusted"), (Numbers{0, 0}));
    EXPECT_TRUE(run.shows(",               ,               ,"));
    run.options(1).alpha = 1.0; // an interval of no width
    ASSERT_EQ(run.runKind(1), success);
    const Numbers row = run.sample(0);
    EXPECT_TRUE(row[1] == row[2] && row[1] == row[3]);
}

// Purposes that an analysis of many left behind are not taken over.
TEST(MultipleRegression, HasOnePurposeShowsProgressAndBuildsItsGraph) {
    for (const int method : {0, 1, 2}) {
        RegressionRun run("stackloss.csv", "stack.loss");
        for (const Index v : {2, 3}) run.run.data.selectionFlags[v] = 1;
        run.options(1).method = method;
        run.failAllocations(firstAnalysisCommand + 1, {outOfMemory, graphNotBuilt});
        run.frontend.percentages.clear();
        ASSERT_EQ(run.runKind(1), success);
        EXPECT_EQ(run.frontend.percentages, (std::vector<int>{0, method == 0 ? 20 : 15, 40, 75, 90, 100}));
        EXPECT_EQ(run.run.data.selectedCount, 1);
        EXPECT_STREQ(run.run.data.working.names[3], "Water.Temp");

        const GraphSpec& spec = run.run.graph.spec;
        EXPECT_TRUE(spec.seriesCount == 3 && spec.kind == GraphKind::biplot && spec.vectorCount == 1 &&
                    spec.itemCount == 21);
        EXPECT_STREQ(spec.seriesNames[0], "theoretic score");
        EXPECT_STREQ(spec.seriesNames[1], "standard resudial");
        EXPECT_STREQ(spec.seriesNames[2], "measure value");
        const Numbers row = run.sample(3);
        EXPECT_NEAR(spec.values[9], row[1], 1e-6);
        EXPECT_NEAR(spec.values[10], row[5], 1e-6);
        EXPECT_EQ(spec.values[11], 24);
    }
}
