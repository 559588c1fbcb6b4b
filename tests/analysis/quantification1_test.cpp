#include "analysis/categorical/quantification1.h"

#include "tests/support/analysis_session.h"

namespace {

constexpr int command = 721;
const std::vector<double> first = {1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 1, 3};
const std::vector<double> second = {1, 1, 2, 2, 1, 2, 2, 2, 1, 1, 1, 2};
const std::vector<double> y = {3.1, 4.7, 9.2, 4.4, 5.9, 8.8, 3.9, 7.3, 6.5, 4.1, 2.2, 10.6};

} // namespace

// Expected: independent least squares on the indicators of all categories but the first ones, and the inverse
// of the correlation matrix of the fitted item scores and y.
TEST(Quantification1, LeastSquaresOnIndicators) {
    AnalysisSession session(fileOf({y, first, second}));
    ASSERT_EQ(session.analyse(command), success);
    const char* quantities = "quantity, standardized";
    expectNear(session.row(quantities, "1 (  1)"), {0, -2.491666667}, 1e-9);
    expectNear(session.row(quantities, "2 (  2)"), {2.6575, 2.6575 - 2.491666667}, 1e-9);
    expectNear(session.row(quantities, "3 (  3)"), {4.8175, 4.8175 - 2.491666667}, 1e-9);
    expectNear(session.row(quantities, "2 (  5)"), {2.23, 1.115}, 1e-9);
    expectNear(session.row(quantities, "v2"), {0, 0, 0.862884881933, 0.948377061004}, 1e-9);
    expectNear(session.row(quantities, "v3"), {0, 0, 0.585454355431, 0.860927583657}, 1e-9);
    expectNear(session.row(quantities, "constant"), {2.285, 70.7 / 12}, 1e-9);
    expectNear(session.row("correlation coefficient matrix", "v3"), {0.183, 1}, 1e-3);
    expectNear(session.row("determination", "m.c.determ"), {0.933893854687}, 1e-9);
    expectNear(session.row("determination", "m.c.coef"), {std::sqrt(0.933893854687)}, 1e-9);
    expectNear(session.row("mesure", "s1"), {3.1, 2.285, 0.815, 1.258}, 1e-3);

    const Graph& graph = session.run.graph;
    ASSERT_TRUE(graph.present);
    EXPECT_STREQ(graph.spec.seriesNames[1].text, "standard resudial");
    EXPECT_STREQ(graph.spec.itemLabels[1].text, "s2");
    expectNear({graph.spec.values.data() + 3, graph.spec.values.data() + 6}, {4.9425, -0.374362075943, 4.7},
               1e-9);
    EXPECT_EQ(graph.spec.vectorCount, 1);

    const FittedModel& model = session.run.data.model;
    EXPECT_EQ(model.kind, 11);
    EXPECT_NEAR(model.constant, 2.285, 1e-9);
    EXPECT_EQ(model.terms[0], 3);
    EXPECT_EQ(model.terms[1], 2);
    expectNear({model.quantities.begin(), model.quantities.begin() + 5}, {0, 2.6575, 4.8175, 0, 2.23}, 1e-9);
    EXPECT_EQ(session.frontend.log,
              "graph-closed no-prediction dialog status progress hidden lower status prediction graph");
    EXPECT_EQ(session.frontend.percentages,
              (std::vector<int>{0, 5, 10, 15, 20, 30, 40, 50, 60, 70, 80, 90, 100}));
}

// y has the means 2 and 5 in the two categories; its squares about them add up to 10, about 3.5 to 28.
TEST(Quantification1, OneItemOfTwoCategoriesIsADifferenceOfMeans) {
    AnalysisSession session(fileOf({{1, 1, 1, 1, 2, 2, 2, 2}, {1, 2, 2, 3, 3, 5, 5, 7}}));
    session.frontend.choose = [](AnalysisRun& run) { return run.options.purposes[0] = 2, true; };
    ASSERT_EQ(session.analyse(command), success);
    expectNear(session.row("quantity", "2 (  2)"), {3, 1.5}, 1e-9);
    expectNear(session.row("quantity", "constant"), {2, 3.5}, 1e-9);
    expectNear(session.row("determination", "m.c.determ"), {18 / 28.0}, 1e-9);
    EXPECT_EQ(session.frontend.lower.find("-0.000"), std::string::npos);
}

TEST(Quantification1, Codes) {
    std::vector<double> huge = y;
    huge[4] = 1e300;
    const std::vector<double> balanced = {1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2},
                              twice = {1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6};
    const struct {
        std::vector<std::vector<double>> columns;
        ErrorCode code;
    } cases[] = {
        {{y}, noEffectiveVariable},
        {{first, y}, illegalCategoricalData},
        {{y, first, first}, singularMatrix},                     // items that coincide
        {{std::vector<double>(12, 7.5), first}, singularMatrix}, // y is constant
        {{std::vector<double>(12, 0.1), first}, singularMatrix}, // and sums with a rounding error
        {{first, first}, singularMatrix},                        // a perfect fit
        {{twice, balanced}, singularMatrix},                     // the item explains nothing
        {{huge, first, second}, singularMatrix},
    };
    for (const auto& one : cases) {
        AnalysisSession session(fileOf(one.columns));
        EXPECT_EQ(session.analyse(command), one.code) << testing::PrintToString(one.columns);
        EXPECT_FALSE(session.run.graph.present);
        EXPECT_EQ(session.frontend.log.find("progress") == std::string::npos,
                  session.frontend.log.find("hidden") == std::string::npos);
    }
    EXPECT_STREQ(quantification1.refuse({}, 0), "please select one purpose variable");
}

TEST(Quantification1, FailingAllocations) {
    AnalysisSession session(fileOf({y, first, second}));
    ErrorCode code = success;
    const long long count =
        failEachAllocation([&] { code = session.analyse(command); },
                           // A graph that cannot be copied tells so and leaves the result.
                           [&] {
                               EXPECT_TRUE(code == outOfMemory ||
                                           session.frontend.takeLog().find("alert(") != std::string::npos);
                           });
    EXPECT_GT(count, 20);
}
