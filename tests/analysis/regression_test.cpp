#include "analysis/basic/regression.h"

#include <numbers>
#include <numeric>

#include "analysis/basic/stepwise_selection.h"
#include "tests/support/regression_run.h"

namespace {

// The engine on a file's own columns, with what an independent fit of all of them gives.
struct Engine : RegressionRun {
    std::string file;
    std::vector<double> expected;
    MomentMatrices moments;

    Engine(const std::string& name, const std::string& purpose, std::istream& numbers)
        : RegressionRun(name, purpose), file(name) {
        for (double value; numbers >> value;) expected.push_back(value);
        reorderWorkingBySelection(run.data);
        const DataMatrix& working = run.data.working;
        EXPECT_EQ(moments.allocate(working.variables), success);
        MeanCovarianceCorrelation(working.values.data(), working.samples, working.variables, moments);
    }
    RegressionData data() const {
        return {run.data.working.values.data(), run.data.working.samples, run.data.working.variables,
                moments};
    }
};

template <class Use> void forEachFile(Use use) {
    std::ifstream file(OMBRIVANTEL_SOURCE_DIR "/tests/analysis/least_squares.txt");
    int count = 0;
    for (std::string line; std::getline(file, line);) {
        if (line[0] == ';') continue;
        std::istringstream words(line);
        std::string name, purpose;
        words >> name >> purpose;
        Engine engine(name, purpose, words);
        SCOPED_TRACE(engine.file);
        use(engine);
        ++count;
    }
    EXPECT_EQ(count, 7);
}

} // namespace

TEST(Regression, AgreesWithLeastSquares) {
    forEachFile([](Engine& engine) {
        RegressionFit fit;
        const std::int32_t k = fit.count = engine.run.data.working.variables - 1;
        ASSERT_EQ(fit.allocate(engine.run.data.working.samples, k + 1), success);
        std::iota(fit.variables.begin(), fit.variables.begin() + k, 0);
        ASSERT_EQ(fitRegression(engine.frontend, engine.data(), 0.05, DeterminantTest::refuseNegative, fit),
                  success);
        std::vector<double> actual = {fit.constant};
        actual.insert(actual.end(), fit.coefficients.begin(), fit.coefficients.begin() + k);
        actual.insert(actual.end(), fit.errors.begin(), fit.errors.begin() + k);
        const double prediction = fit.predictions[0], halfWidth = fit.halfWidths[0];
        actual.insert(actual.end(),
                      {fit.determinations[0], fit.determinations[1], fit.fValues[static_cast<std::size_t>(k)],
                       prediction, prediction - halfWidth, prediction + halfWidth});
        ASSERT_EQ(actual.size() + 1, engine.expected.size());
        // A residual has lost the digits that measure and prediction share.
        EXPECT_NEAR(fit.standardizedResiduals[0], engine.expected.back(), 1e-8);
        for (std::size_t i = 0; i < actual.size(); ++i) expectRelative(actual[i], engine.expected[i], 1e-9);

        const double n = engine.run.data.working.samples;
        expectRelative(fit.determinations[2],
                       1 - (1 - fit.determinations[0]) * (n - 1) * (n + k + 1) / ((n + 1) * (n - k - 1)),
                       1e-12);
        for (std::size_t j = 0; j < static_cast<std::size_t>(k); ++j) {
            const double t = fit.coefficients[j] / fit.errors[j];
            expectRelative(fit.fValues[j], t * t, 1e-10);
            expectRelative(fit.partial[j], t / std::sqrt(t * t + n - k - 1), 1e-10);
            expectRelative(fit.standardized[j] * engine.moments.sds[static_cast<std::size_t>(k)],
                           fit.coefficients[j] * engine.moments.sds[j], 1e-10);
        }
    });
}

namespace {

using Columns = std::vector<std::size_t>;
using Numbers = std::vector<double>;

double product(const Numbers& a, const Numbers& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

// The stepwise methods once more, on residual sums of squares by orthogonal columns instead of correlations.
struct PlainSelection {
    const Engine& engine;
    const RegressionOptions& options;
    Columns model = {};
    std::vector<SelectionStep> steps = {};

    Numbers without(const std::vector<Numbers>& basis, std::size_t column) const {
        Numbers x(static_cast<std::size_t>(engine.run.data.working.samples));
        for (std::size_t i = 0; i < x.size(); ++i)
            x[i] = engine.value(i, column) - engine.moments.means[column];
        for (std::size_t pass = 0; pass < 2 * basis.size(); ++pass) {
            const Numbers& direction = basis[pass % basis.size()];
            const double share = product(x, direction) / product(direction, direction);
            for (std::size_t i = 0; i < x.size(); ++i) x[i] -= share * direction[i];
        }
        return x;
    }
    // The mean square of the purpose variable that some columns do not explain.
    double rest(const Columns& columns) const {
        std::vector<Numbers> basis;
        for (const std::size_t column : columns) basis.push_back(without(basis, column));
        const Numbers y = without(basis, engine.variables() - 1);
        return product(y, y) / static_cast<double>(y.size());
    }
    SelectionStep describe(std::int32_t variable, StepMark mark, double f) const {
        const double n = engine.run.data.working.samples, least = rest(model);
        return {variable, mark, 1 - least / rest({}), f,
                n * std::log(2 * std::numbers::pi * least) + n +
                    2.0 * (static_cast<double>(model.size()) + 2)};
    }
    // Tries the best model with one variable more or less.
    bool test(StepMark mark, bool recordsFailure) {
        const Columns before = model;
        std::int32_t moved = -1;
        for (std::size_t v = 0; v + 1 < engine.variables(); ++v) {
            Columns changed = before;
            if ((std::erase(changed, v) != 0) != (mark == StepMark::out)) continue;
            if (mark == StepMark::in) changed.push_back(v);
            if (moved >= 0 && rest(changed) >= rest(model)) continue;
            model = changed;
            moved = static_cast<std::int32_t>(v);
        }
        if (moved < 0) return false;
        const double more = std::min(rest(before), rest(model)), less = std::max(rest(before), rest(model));
        const double size = static_cast<double>(std::max(before.size(), model.size()));
        const double f = (engine.run.data.working.samples - 1.0 - size) * (less - more) / more;
        SelectionStep step = describe(moved, mark, f);
        const Columns after = std::exchange(model, before);
        const bool byAic = step.aic < describe(moved, mark, f).aic;
        const bool byF = mark == StepMark::in ? f >= options.fIn : f <= options.fOut;
        const bool moves = options.criterion == 1 ? byF : byAic;
        if (moves) model = after;
        if (moves || recordsFailure) steps.push_back(moves ? step : describe(moved, StepMark::none, f));
        return moves;
    }
    void select() {
        const bool backward = options.method % 2 == 0;
        const StepMark there = backward ? StepMark::out : StepMark::in;
        const StepMark back = backward ? StepMark::in : StepMark::out;
        for (std::size_t v = 0; backward && v + 1 < engine.variables(); ++v) model.push_back(v);
        while (test(there, true)) {
            while (options.method <= 2 && (backward || model.size() >= 2) && test(back, false)) {
            }
        }
    }
};

} // namespace

TEST(StepwiseSelection, AgreesWithAPlainOne) {
    const RegressionOptions criteria[] = {
        {0, 0, 2.0, 1.5, 0}, {0, 1, 2.0, 1.5, 0}, {0, 1, 9.0, 8.9, 0}, {0, 1, 1.01, 1, 0}};
    int turns = 0; // moves against the direction of the method
    forEachFile([&](Engine& engine) {
        if (engine.file == "boston.csv") return; // slow
        for (int method = 1; method <= 4; ++method) {
            for (RegressionOptions options : criteria) {
                options.method = method;
                PlainSelection plain = {engine, options};
                plain.select();
                StepwiseSelection selection;
                ASSERT_EQ(selection.allocate(engine.run.data.working.variables), success);
                ASSERT_EQ(selectVariables(engine.data(), options, selection), success);
                EXPECT_EQ(Columns(selection.variables.begin(), selection.variables.begin() + selection.count),
                          plain.model);
                ASSERT_EQ(static_cast<std::size_t>(selection.stepCount), plain.steps.size());
                for (std::size_t k = 0; k < plain.steps.size(); ++k) {
                    const SelectionStep &actual = selection.steps[k], &expected = plain.steps[k];
                    EXPECT_EQ(actual.variable, expected.variable) << k;
                    EXPECT_EQ(actual.mark, expected.mark) << k;
                    EXPECT_NEAR(actual.determination, expected.determination, 1e-9) << k;
                    EXPECT_NEAR(actual.f, expected.f, 1e-6 * (1 + expected.f)) << k;
                    expectRelative(actual.aic, expected.aic, 1e-7);
                    if (method <= 2 && actual.mark == (method == 1 ? StepMark::out : StepMark::in)) ++turns;
                }
            }
        }
    });
    EXPECT_GT(turns, 0);
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
        {file(9.0), {1, 1, 99, 98, 0}, noEffectiveVariable},
        {file(9.0), {0, 0, 2, 1, -1.0}, success},
        {file(9.0), {2, 1, INFINITY, NAN, NAN}, success},
        {file(9.0), {7, -3, 2, 1, INFINITY}, success}, // settings of unknown origin
    };
    for (const auto& each : cases) {
        RegressionRun run(each.text);
        run.options(1) = each.options;
        EXPECT_EQ(run.runKind(1), each.code) << each.text;
        EXPECT_EQ(run.model().kind, each.code == success ? 1 : FittedModel::none);
    }
    // A copied column: its determinant is 0, not negative, so values pass that are not finite; stepwise it
    // stays out.
    for (const int method : {0, 1}) {
        RegressionRun run(fileOf({y, x, x}));
        run.options(1) = {method, 1, 1.1, 1, 0.05};
        ASSERT_EQ(run.runKind(1), success);
        EXPECT_EQ(run.model().count, method == 0 ? 2 : 1);
        EXPECT_EQ(std::isfinite(run.model().coefficients[0]), method == 1);
    }
}

// A column that explains next to nothing has negative adjusted values.
TEST(MultipleRegression, ClampsAdjustedValuesAndBlanksIntervals) {
    RegressionRun run("label,y,x\na,1,1\nb,2,-1\nc,1,-1\nd,2,1\ne,1.5,0\nf,1.5,0.5\n");
    run.options(1) = {0, 0, 2, 1, 0.0};
    ASSERT_EQ(run.runKind(1), success);
    EXPECT_EQ(run.row("model value", "adjusted"), (Numbers{0, 0}));
    EXPECT_EQ(run.row("model value", "re-adjusted"), (Numbers{0, 0}));
    EXPECT_NE(run.frontend.lower.find(",               ,               ,"), std::string::npos);
    run.options(1).alpha = 1.0; // an interval of no width
    ASSERT_EQ(run.runKind(1), success);
    const Numbers row = run.sample(0);
    EXPECT_TRUE(row[1] == row[2] && row[1] == row[3]);
}

TEST(MultipleRegression, ShowsProgressBuildsItsGraphAndFailsWithCode4) {
    for (const int method : {0, 1, 2}) {
        RegressionRun run("stackloss.csv", "stack.loss");
        run.options(1).method = method;
        ErrorCode code = success;
        failEachAllocation([&] { code = run.runKind(1); },
                           [&] { EXPECT_TRUE(code == outOfMemory || code == graphNotBuilt) << code; });
        run.frontend.percentages.clear();
        ASSERT_EQ(run.runKind(1), success);
        EXPECT_EQ(run.frontend.percentages, (std::vector<int>{0, method == 0 ? 20 : 15, 40, 75, 90, 100}));

        const GraphSpec& spec = run.run.graph.spec;
        EXPECT_TRUE(spec.seriesCount == 3 && spec.kind == 7 && spec.vectorCount == 1 && spec.itemCount == 21);
        EXPECT_STREQ(spec.seriesNames[0].text, "theoretic score");
        EXPECT_STREQ(spec.seriesNames[1].text, "standard resudial");
        EXPECT_STREQ(spec.seriesNames[2].text, "measure value");
        const Numbers row = run.sample(3);
        EXPECT_NEAR(spec.values[9], row[1], 1e-6);
        EXPECT_NEAR(spec.values[10], row[5], 1e-6);
        EXPECT_EQ(spec.values[11], 28);
    }
}

// Purposes that an analysis of many left behind are not taken over.
TEST(MultipleRegression, HasOnePurpose) {
    RegressionRun run("stackloss.csv");
    for (const std::size_t v : {2, 3, 4}) run.run.data.selectionFlags[v] = 1;
    run.run.data.selectionFlags[1] = 0;
    ASSERT_EQ(run.runKind(1), success);
    EXPECT_EQ(run.run.data.selectedCount, 1);
    EXPECT_STREQ(run.run.data.working.names[3].text, "Water.Temp");
}
