#include "analysis/multivariate/canonical/canonical_correlation.h"

#include "analysis/multivariate/canonical/canonical_variates.h"
#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 713;

void choosePurposes(AnalysisSession& session, const std::vector<int>& purposes) {
    session.frontend.choose = [purposes](AnalysisRun& run) {
        std::fill(std::begin(run.options.purposes), std::end(run.options.purposes), 0);
        std::copy(purposes.begin(), purposes.end(), run.options.purposes);
        return true;
    };
}

} // namespace

// The correlation of the pairs of variates from their weights, scaled to variates of variance 1, is the
// canonical one: the signs of both weights fit together, which printed columns alone do not show. The values
// are those of an independent computation by QR decompositions.
TEST(CanonicalVariates, WeightsGiveTheCorrelationsBack) {
    AnalysisSession session(readTextFile("reference/data/swiss.csv"));
    DataSet& data = session.run.data;
    for (const std::size_t v : {1U, 3U, 6U}) data.selectionFlags[v] = 1;
    ASSERT_EQ(reorderWorkingBySelection(data), success);
    CanonicalVariates variates;
    ASSERT_EQ(variates.allocate(3, 3), success);
    ASSERT_EQ(findCanonicalVariates(session.frontend, classicNumerics, data.working, variates), success);
    expectNear({variates.meanSquare, variates.generalisedSquare, variates.harmonicSquare},
               {0.3482479638, 0.8425849297, 0.5769746882}, 1e-9);
    const double squares[] = {0.79012414167, 0.23477659296, 0.01984315686};
    for (Index k = 0; k < 3; ++k) {
        double correlation = 0;
        for (Index i = 0; i < 3; ++i)
            for (Index j = 0; j < 3; ++j)
                correlation +=
                    variates.explanatoryWeights(i, k) * variates.r12(i, j) * variates.purposeWeights(j, k);
        EXPECT_NEAR(correlation, std::sqrt(squares[k]), 1e-9) << k;
    }
}

TEST(CanonicalCorrelation, Deviations) {
    AnalysisSession session(readTextFile("reference/data/mtcars.csv"));
    choosePurposes(session, {1, 4, 6}); // mpg, hp, wt
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_STREQ(session.run.deviations, "chi.square, chi.prob, f.value, deg.free.2");
    session.run.numerics = &textbookNumerics;
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_STREQ(session.run.deviations, "");
    EXPECT_GT(session.failAllocations(command), 25);
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
        EXPECT_FALSE(session.shows("canonical"));
    }
    AnalysisOptions options = {};
    EXPECT_STREQ(canonicalCorrelation.refuse(options, 0), "please select at least one purpose variable");
    options.purposes[8] = 1;
    EXPECT_EQ(canonicalCorrelation.refuse(options, 0), nullptr);
}
