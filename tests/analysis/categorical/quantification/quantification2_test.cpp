#include "analysis/categorical/quantification/quantification2.h"

#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 722;

} // namespace

TEST(Quantification2, NoDifferenceBetweenTwoGroupsHasNoScores) {
    AnalysisSession session(fileOf({{1, 1, 1, 1, 2, 2}, {1, 1, 2, 2, 1, 2}}));
    ASSERT_EQ(session.analyse(command), success);
    expectNear(session.row("quantity", "2 (  2)"), {0}, 0);
    expectNear(session.row("canonical", "coef.square"), {0}, 0);
}

TEST(Quantification2, Codes) {
    const std::vector<double> two = {1, 2, 1, 2, 1, 2, 1, 1}, three = {1, 2, 3, 1, 2, 3, 3, 1}, nines(8, 9.0);
    const std::tuple<std::vector<std::vector<double>>, ErrorCode, const char*> cases[] = {
        {{two}, noEffectiveVariable, ""},
        {{{1, 3, 1, 3, 1, 3, 1, 3}, nines}, illegalGroupVariable, "illegal group variable."},
        {{two, nines}, illegalCategoricalData, "illegal categorical variable data."},
        {{three, two, two}, eigenNotConvergent, "eigen not convergent."},
        {{{2, 2, 1, 1, 2, 1, 2, 2}, two, two}, singularMatrix, "detected singular matrix."},
        // One vector is too little for the scatter of three groups.
        {{three, two}, graphNotBuilt, "quantification 2 discriminant analysis statistics"},
    };
    for (const auto& [columns, code, shown] : cases) {
        AnalysisSession session(fileOf(columns));
        EXPECT_EQ(session.analyse(command), code) << shown;
        EXPECT_TRUE(session.shows(shown));
    }
    EXPECT_STREQ(quantification2.refuse({}, 0), "please select one group variable");
    for (const auto& groups : {std::vector<double>{1, 2, 1, 2, 2, 1, 2, 1}, three}) {
        AnalysisSession session(fileOf({groups, two, {1, 1, 2, 2, 1, 2, 1, 2}}));
        EXPECT_GT(session.failAllocations(command, {outOfMemory, graphNotBuilt}), 18);
    }
}
