#include "analysis/multivariate/canonical_correlation.h"

#include "analysis/multivariate/canonical_variates.h"
#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 713;

void choosePurposes(AnalysisSession& session, std::vector<int> purposes) {
    session.frontend.choose = [purposes](AnalysisRun& run) {
        for (const std::int32_t shown : run.options.purposes) EXPECT_EQ(shown, 0); // opens with none
        std::copy(purposes.begin(), purposes.end(), run.options.purposes);
        return true;
    };
}

void expectBlock(const Block<double>& values, const std::vector<double>& expected, double tolerance) {
    expectNear({values.begin(), values.end()}, expected, tolerance);
}

// The columns of three, each with either sign.
void expectColumns(const Block<double>& values, std::vector<double> expected) {
    for (std::size_t at = expected.size(); at-- > 0;) {
        if (values[at % 3] * expected[at % 3] < 0) expected[at] = -expected[at];
    }
    expectBlock(values, expected, 0.6e-7);
}

} // namespace

// Fertility, Examination and Infant.Mortality against Agriculture, Education and Catholic of the Swiss data,
// from an independent canonical correlation by QR decompositions, weights scaled to variates of variance 1.
TEST(CanonicalVariates, SwissData) {
    AnalysisSession session(readTextFile("reference/data/swiss.csv"));
    DataSet& data = session.run.data;
    for (const std::size_t v : {1U, 3U, 6U}) data.selectionFlags[v] = 1;
    reorderWorkingBySelection(data);
    CanonicalVariates variates;
    ASSERT_EQ(variates.allocate(3, 3), success);
    ASSERT_EQ(findCanonicalVariates(session.frontend, data.working, variates), success);
    expectBlock(variates.squares, {0.79012414167, 0.23477659296, 0.01984315686}, 1e-10);
    expectBlock(variates.wilks, {0.1574150703, 0.7500389589, 0.9801568431}, 1e-9);
    expectBlock(variates.chiSquare, {78.5769411, 12.3006819, 0.9224640133}, 1e-6);
    expectBlock(variates.freedom, {9, 4, 1}, 0);
    expectBlock(variates.redundancy,
                {0.428384, 0.039648, 0.005734, 0.473765, 0.438041, 0.046100, 0.004946, 0.489087}, 0.6e-6);
    expectNear({variates.raoF, variates.raoProbability, variates.raoFreedom1, variates.raoFreedom2},
               {12.6316236, 0, 9, 99}, 1e-6);
    expectNear({variates.meanSquare, variates.generalisedSquare, variates.harmonicSquare},
               {0.3482479638, 0.8425849297, 0.5769746882}, 1e-9);
    expectColumns(variates.explanatoryWeights, {0.0240465, -1.4025664, 0.2089092, 0.7844854, -0.9138422,
                                                -0.5274676, -0.5373781, 0.2989431, -0.9162144});
    expectColumns(variates.purposeWeights, {-0.4665773, 1.1733116, 0.7498132, 0.6510532, 1.0867326, 0.4483162,
                                            0.0731912, 0.1069222, -1.1210242});
    // The signs of both weights fit together.
    double correlation = 0;
    for (std::size_t i = 0; i < 9; ++i)
        correlation +=
            variates.explanatoryWeights[i / 3 * 3] * variates.r12[i] * variates.purposeWeights[i % 3 * 3];
    EXPECT_NEAR(correlation, variates.correlations[0], 1e-10);
}

// The multiple correlation of one purpose variable; half of five variables is two here.
TEST(CanonicalCorrelation, OnePurposeVariable) {
    AnalysisSession session(readTextFile("reference/data/swiss.csv"));
    session.run.data.exclusion.slots[0] = 6;
    buildDataSet(session.run.data);
    choosePurposes(session, {1});
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 15, 20, 30, 50, 70, 85, 100}));
    expectNear(session.row("eigen", "chi.square"), {45.641138}, 0.6e-6);
    expectNear(session.row("freedom 1", "f.value"), {19.713917}, 1e-6);
    expectNear(session.row("freedom 1", "deg.free.2"), {42}, 0);
    expectNear(session.row("redundancy", "purpose"), {0.649790, 0.649790}, 0.6e-6);
    EXPECT_NEAR(std::fabs(session.row("weight", "Education")[0]), 0.918248, 0.6e-6);
    ErrorCode code = success;
    EXPECT_GT(
        failEachAllocation([&] { code = session.analyse(command); }, [&] { EXPECT_EQ(code, outOfMemory); }),
        25);
}

// Two variables against one are too little for Rao's F, and a repeated variable adds no correlation.
TEST(CanonicalCorrelation, LimitingCases) {
    const std::vector<double> x = {1, 2, 3, 4, 5, 7, 6}, y = {2, 1, 4, 3, 5, 5, 8};
    AnalysisSession session(fileOf({x, y, {1, 0, 1, 1, 0, 2, 1}, x}));
    choosePurposes(session, {1, 4});
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_EQ(session.row("eigen", "correlation")[1], 0);
    EXPECT_EQ(session.row("structure matrix of explanatory", "v3")[1], 0);
    session.run.data.exclusion.slots[0] = 4;
    buildDataSet(session.run.data);
    choosePurposes(session, {3});
    ASSERT_EQ(session.analyse(command), success);
    for (const auto& [label, value] : {std::pair{"f.value", 0}, {"f.probability", 1}, {"deg.free.2", 0}})
        expectNear(session.row("freedom 1", label), {static_cast<double>(value)}, 0);
}

TEST(CanonicalCorrelation, Codes) {
    const std::vector<double> x = {1, 2, 4, 8, 5, 7, 6}, y = {2, 1, 4, 3, 5, 5, 8}, constant(7, 3.0);
    const std::tuple<std::vector<std::vector<double>>, std::vector<int>, ErrorCode> cases[] = {
        {{x, constant}, {2, 1}, noEffectiveVariable},
        {{x, x, constant}, {3}, illegalData},
        {{x, x, y}, {3}, singularMatrix}};
    for (const auto& [columns, purposes, code] : cases) {
        AnalysisSession session(fileOf(columns));
        choosePurposes(session, purposes);
        EXPECT_EQ(session.analyse(command), code);
        EXPECT_EQ(session.frontend.lower.find("canonical"), std::string::npos);
    }
    AnalysisOptions options = {};
    EXPECT_STREQ(canonicalCorrelation.refuse(options, 0), "please select at least one purpose variable");
    options.purposes[8] = 1;
    EXPECT_EQ(canonicalCorrelation.refuse(options, 0), nullptr);
}
