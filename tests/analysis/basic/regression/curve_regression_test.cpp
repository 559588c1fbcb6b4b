#include "analysis/basic/regression/curve_regression.h"

#include "tests/support/regression_run.h"

namespace {

using Function = double (*)(double);

// clang-format off
double same(double x) { return x; }
double logarithm(double x) { return std::log(x); }
double inverse(double x) { return 1 / x; }
double logit(double y) { return std::log(y / (1 - y)); }
double logistic(double v) { return 1 / (1 + std::exp(-v)); }
double logitOf100(double y) { return logit(y / 100); }
double logisticTo100(double v) { return 100 * logistic(v); }

struct Curve {
    std::int32_t kind;
    const char *file, *purpose;
    const char* squared; // a column that kind 41 squares
    RegressionOptions options;
    Function x, y, back;
};
const Curve curves[] = {
    {41, "stackloss.csv", "stack.loss", "Air.Flow", {0, 0, 2, 1, 0.05}, same, same, same},
    {42, "stackloss.csv", "stack.loss", "", {1, 1, 2, 1, 0.1}, logarithm, logarithm, std::exp},
    {43, "longley.csv", "Employed", "", {2, 0, 2, 1, 0.05}, same, logarithm, std::exp},
    {44, "mtcars.csv", "mpg", "", {4, 1, 4, 3, 0.05}, same, inverse, inverse},
    {45, "boston.csv", "nox", "", {3, 0, 2, 1, 0.01}, same, logit, logistic},
    {46, "USArrests.csv", "UrbanPop", "", {0, 0, 2, 1, 0.2}, same, logitOf100, logisticTo100},
};
// clang-format on

} // namespace

TEST(CurveRegression, IsTheRegressionOnTransformedColumns) {
    for (const Curve& curve : curves) {
        SCOPED_TRACE(curve.kind);
        RegressionRun actual(curve.file, curve.purpose);
        const DataMatrix& data = actual.run.data.loaded;
        std::vector<std::vector<double>> columns(static_cast<std::size_t>(data.variables));
        for (std::int32_t v = 0; v < data.variables; ++v) {
            const std::string name = data.name(v);
            if (name == curve.squared) actual.run.options.slotColumns[9] = v + 1;
            for (Index i = 0; i < data.samples; ++i) {
                const double value = (name == curve.purpose ? curve.y : curve.x)(data.at(i, v));
                columns[static_cast<std::size_t>(v)].push_back(name == curve.squared ? value * value : value);
            }
        }
        actual.options(curve.kind) = curve.options;
        actual.run.options.slotDegrees[9] = 2.0;
        RegressionRun linear(fileOf(columns),
                             std::string("v").append(std::to_string(actual.variable(curve.purpose))));
        linear.options(1) = curve.options;
        ASSERT_EQ(actual.runKind(curve.kind), success);
        ASSERT_EQ(linear.runKind(1), success);

        const FittedModel &model = actual.model(), &expected = linear.model();
        ASSERT_EQ(model.count, expected.count);
        expectRelative(model.constant, expected.constant, 1e-8);
        expectRelative(model.residualVariance, expected.residualVariance, 1e-8);
        for (Index j = 0; j < model.count; ++j) {
            EXPECT_EQ(model.variables[j], expected.variables[j]);
            expectRelative(model.coefficients[j], expected.coefficients[j], 1e-8);
        }
        // Limits in ascending order, and all but the standardized residual on the scale of the data.
        const std::vector<double> row = actual.sample(1), plain = linear.sample(1);
        const double limits[] = {curve.back(plain[2]), curve.back(plain[3])};
        EXPECT_EQ(row[0], actual.value(1, actual.variables() - 1));
        expectRelative(row[1], curve.back(plain[1]), 1e-4);
        expectRelative(row[2], std::min(limits[0], limits[1]), 1e-3);
        expectRelative(row[3], std::max(limits[0], limits[1]), 1e-3);
        EXPECT_NEAR(row[4], row[0] - row[1], 2e-6);
        EXPECT_NEAR(row[5], plain[5], 1e-5);
        EXPECT_NEAR(actual.run.graph.spec.values[3], row[1], 1e-5);
    }
}

TEST(CurveRegression, RefusesBadDataInOrder) {
    const struct {
        const char *y, *x;  // of one sample; the others are in order
        ErrorCode codes[5]; // of kinds 42..46
    } cases[] = {
        {"0.5", "3", {0, 0, 0, 0, 0}},
        {"0", "0", {2050, 2052, 2052, 2052, 2052}},
        {"0.5", "-3", {2050, 0, 0, 0, 0}},
        {"1", "3", {0, 0, 0, 2052, 0}},
        {"100", "3", {0, 0, 0, 2052, 2052}},
        {"1e999", "3", {264, 264, 264, 2052, 2052}},
        {"0.5", "1e999", {264, 264, 264, 264, 264}},
    };
    for (const auto& each : cases) {
        for (std::int32_t kind = 42; kind <= 46; ++kind) {
            RegressionRun run("label,y,x\na,0.1,1\nb,0.4,2\nc,0.3,4\nd,0.9,3\ne,0.7,6\nf," +
                              std::string(each.y) + "," + each.x + "\n");
            run.options(kind).method = 0;
            EXPECT_EQ(run.runKind(kind), each.codes[kind - 42]) << kind << " y " << each.y << " x " << each.x;
        }
    }
}

// Degrees are listed for the explanatory variables, with their decimals even if the data are too large for
// any; one of the purpose variable is of no effect.
TEST(CurveRegression, ListsDegreesAndFailsWithCode4) {
    RegressionRun run("stackloss.csv", "stack.loss");
    run.run.options.settings.expressGraph = 0;
    run.run.options.slotColumns[0] = run.variable("stack.loss");
    run.run.options.slotDegrees[0] = 3.0;
    run.run.options.slotColumns[9] = run.variable("Air.Flow");
    run.run.options.slotDegrees[9] = 2.5;
    const DataMatrix& data = run.run.data.loaded;
    for (Index s = 0; s < data.samples; ++s) run.run.data.loadedValues[(s + 1) * data.variables - 2] *= 1e12;
    run.failAllocations(firstAnalysisCommand + 41);
    EXPECT_EQ(run.row("degree of terms", "Air.Flow"), (std::vector<double>{2.5}));
    EXPECT_EQ(run.row("degree of terms", "Water.Temp"), (std::vector<double>{1.0}));
}
