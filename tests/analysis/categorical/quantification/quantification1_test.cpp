#include "analysis/categorical/quantification/quantification1.h"

#include "tests/support/analysis_session.h"

namespace {

constexpr int command = 721;
const std::vector<double> first = {1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 1, 3};
const std::vector<double> second = {1, 1, 2, 2, 1, 2, 2, 2, 1, 1, 1, 2};
const std::vector<double> y = {3.1, 4.7, 9.2, 4.4, 5.9, 8.8, 3.9, 7.3, 6.5, 4.1, 2.2, 10.6};

} // namespace

// Expected: independent least squares on the indicators of all categories but the first ones.
TEST(Quantification1, GraphAndModel) {
    AnalysisSession session(fileOf({y, first, second}));
    ASSERT_EQ(session.analyse(command), success);
    const Graph& graph = session.run.graph;
    ASSERT_TRUE(graph.present);
    EXPECT_STREQ(graph.spec.seriesNames[1], "standard resudial");
    EXPECT_STREQ(graph.spec.itemLabels[1], "s2");
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
    ErrorCode code = success;
    const auto analyse = [&] { code = session.analyse(command); };
    const auto check = [&] { // a graph that cannot be copied tells so and leaves the result
        const std::string log = session.frontend.takeLog();
        EXPECT_TRUE(code == outOfMemory || log.find("alert(") != std::string::npos);
    };
    for (const Numerics* numerics : {&classicNumerics, &textbookNumerics}) {
        session.run.numerics = numerics;
        EXPECT_GT(failEachAllocation(analyse, check), 20);
    }
}

// y has the means 2 and 5 in the two categories; its squares about them add up to 10, about 3.5 to 28.
TEST(Quantification1, OneItemOfTwoCategoriesIsADifferenceOfMeans) {
    AnalysisSession session(fileOf({{1, 1, 1, 1, 2, 2, 2, 2}, {1, 2, 2, 3, 3, 5, 5, 7}}));
    ASSERT_EQ(session.analyse(command, [](AnalysisOptions& options) { options.purposes[0] = 2; }), success);
    expectNear(session.row("quantity", "2 (  2)"), {3, 1.5}, 1e-9);
    expectNear(session.row("quantity", "constant"), {2, 3.5}, 1e-9);
    expectNear(session.row("determination", "m.c.determ"), {18 / 28.0}, 1e-9);
    EXPECT_FALSE(session.shows("-0.000"));
}

// Expected: residual / s by R's lm. A great mean of y, in whole numbers here, costs no digits.
TEST(Quantification1, TextbookNumericsDivideByDegreesOfFreedom) {
    for (const auto& [unit, shift] : {std::pair{1.0, 0.0}, {10.0, 1e9}}) {
        std::vector<double> shifted = y;
        for (double& value : shifted) value = shift == 0.0 ? value : std::round(unit * value) + shift;
        AnalysisSession session(fileOf({shifted, first, second}));
        if (shift == 0.0) {
            ASSERT_EQ(session.analyse(command), success);
            EXPECT_STREQ(session.run.deviations, "s.residual");
        }
        session.run.numerics = &textbookNumerics;
        ASSERT_EQ(session.analyse(command), success);
        EXPECT_STREQ(session.run.deviations, "");
        expectNear(session.row("determination", "m.c.determ"), {0.933893854687}, 1e-9);
        const Block<double>& values = session.run.graph.spec.values; // three of each sample
        expectNear({values[1], values[4], values[7]}, {1.027287688061, -0.305665355037, -0.167013029041},
                   1e-7);
    }
}

TEST(Quantification1, Codes) {
    std::vector<double> huge = y;
    huge[4] = 1e300;
    const std::vector<double> balanced = {1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2},
                              twice = {1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6};
    const std::pair<std::vector<std::vector<double>>, ErrorCode> cases[] = {
        {{y}, noEffectiveVariable},
        {{first, y}, illegalCategoricalData},
        {{y, first, first}, singularMatrix},                     // items that coincide
        {{std::vector<double>(12, 7.5), first}, singularMatrix}, // y is constant
        {{std::vector<double>(12, 0.1), first}, singularMatrix}, // and sums with a rounding error
        {{first, first}, singularMatrix},                        // a perfect fit
        {{twice, balanced}, singularMatrix},                     // the item explains nothing
        {{huge, first, second}, singularMatrix},
    };
    for (const auto& [columns, code] : cases) {
        AnalysisSession session(fileOf(columns));
        EXPECT_EQ(session.analyse(command), code) << testing::PrintToString(columns);
        EXPECT_FALSE(session.run.graph.present);
    }
    EXPECT_STREQ(quantification1.refuse({}, 0), "please select one purpose variable");
}
