#include "analysis/categorical/quantification2.h"

#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 722;

// Mean and variance of column `d` of the scores, over the samples s1.. of a group (0: all).
std::pair<double, double> momentsOf(const AnalysisSession& session, const std::vector<double>& groups,
                                    std::size_t d, int group) {
    double count = 0, sum = 0, squares = 0;
    for (std::size_t s = 0; s < groups.size(); ++s) {
        if (group != 0 && static_cast<int>(groups[s]) != group) continue;
        const double score = session.row("score of sample", "s" + std::to_string(s + 1))[d];
        count += 1, sum += score, squares += score * score;
    }
    return {sum / count, squares / count - sum * sum / count / count};
}

} // namespace

// Expected: canonical correlation of the indicators of q2..q5 with that of the second group of q1, scores
// scaled to variance 1; the direction is that of the first group's excess.
TEST(Quantification2, TwoGroups) {
    AnalysisSession session(readTextFile("reference/data/survey-items.csv"));
    ASSERT_EQ(session.analyse(command), success);
    const std::pair<const char*, double> quantities[] = {
        {"2 (  2)", -0.946498}, {"3 (  3)", -1.321571}, {"2 (  5)", -0.749356}, {"3 (  6)", -0.873956},
        {"4 (  7)", -1.361261}, {"2 (  9)", -1.184840}, {"3 ( 10)", -0.931156}, {"2 ( 12)", 0.393156},
        {"3 ( 13)", 0.446284},  {"4 ( 14)", 0.152145},  {"1 (  1)", 0},         {"1 ( 11)", 0}};
    for (const auto& [label, value] : quantities) {
        expectNear(session.row("quantity of categories", label), {value}, 1.01e-6);
    }
    expectNear(session.row("canonical correlation", "coef.square"), {0.2395271}, 1e-6);
    expectNear(session.row("canonical correlation", "c.c.coef"), {std::sqrt(0.2395271)}, 1e-6);
    expectNear(session.row("centroid of group", "group 1"), {-1.694134}, 1.01e-6);
    expectNear(session.row("centroid of group", "group 2"), {-2.676380}, 1.01e-6);
    expectNear(session.row("frequency matrix", "all category"), {65, 55, 120}, 0);
    EXPECT_FALSE(session.run.graph.present);
}

// Identities: variance 1, centroids are mean scores, and the squared correlation is the share of the variance
// between the groups. Here the first group alone has category 2 of v2, and nothing else separates the others.
TEST(Quantification2, ThreeGroups) {
    const std::vector<double> groups = {1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3};
    AnalysisSession session(
        fileOf({groups, {2, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1}, {1, 2, 3, 1, 1, 2, 3, 3, 1, 2, 2, 3}}));
    ASSERT_EQ(session.analyse(command), success);
    const std::vector<double> squares = session.row("canonical correlation", "coef.square");
    EXPECT_NEAR(squares[0], 1, 1e-6);
    for (std::size_t d = 0; d < 2; ++d) {
        EXPECT_NEAR(momentsOf(session, groups, d, 0).second, 1, 1e-5);
        double within = 0;
        for (int k = 1; k <= 3; ++k) {
            const auto [mean, variance] = momentsOf(session, groups, d, k);
            EXPECT_NEAR(session.row("centroid of group", "group " + std::to_string(k))[d], mean, 1e-6);
            within += variance / 3;
        }
        EXPECT_NEAR(1 - within, squares[d], 1e-5);
    }
    const GraphSpec& spec = session.run.graph.spec;
    ASSERT_TRUE(session.run.graph.present);
    EXPECT_STREQ(spec.seriesNames[1].text, "vector 2");
    EXPECT_NEAR(spec.values[9], session.row("score of sample", "s5")[1], 1e-6);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 10, 30, 65, 100}));
}

TEST(Quantification2, NoDifferenceBetweenTwoGroupsHasNoScores) {
    AnalysisSession session(fileOf({{1, 1, 1, 1, 2, 2}, {1, 1, 2, 2, 1, 2}}));
    ASSERT_EQ(session.analyse(command), success);
    expectNear(session.row("quantity", "2 (  2)"), {0}, 0);
    expectNear(session.row("canonical", "coef.square"), {0}, 0);
}

TEST(Quantification2, Codes) {
    const std::vector<double> two = {1, 2, 1, 2, 1, 2, 1, 1}, three = {1, 2, 3, 1, 2, 3, 3, 1};
    const struct {
        std::vector<std::vector<double>> columns;
        ErrorCode code;
        const char* shown;
    } cases[] = {
        {{two}, noEffectiveVariable, ""},
        {{{1, 3, 1, 3, 1, 3, 1, 3}, {9, 9, 9, 9, 9, 9, 9, 9}},
         illegalGroupVariable,
         "illegal group variable."},
        {{two, {9, 9, 9, 9, 9, 9, 9, 9}}, illegalCategoricalData, "illegal categorical variable data."},
        {{three, two, two}, eigenNotConvergent, "eigen not convergent."},
        {{{2, 2, 1, 1, 2, 1, 2, 2}, two, two}, singularMatrix, "detected singular matrix."},
        // One vector is too little for the scatter of three groups.
        {{three, two}, graphNotBuilt, "quantification 2 discriminant analysis statistics"},
    };
    for (const auto& one : cases) {
        AnalysisSession session(fileOf(one.columns));
        EXPECT_EQ(session.analyse(command), one.code) << one.shown;
        EXPECT_NE(session.frontend.lower.find(one.shown), std::string::npos);
    }
    EXPECT_STREQ(quantification2.refuse({}, 0), "please select one group variable");
}

TEST(Quantification2, FailingAllocations) {
    for (const std::vector<double>& groups :
         {std::vector<double>{1, 2, 1, 2, 2, 1, 2, 1}, {1, 2, 3, 1, 2, 3, 3, 1}}) {
        AnalysisSession session(fileOf({groups, {1, 2, 1, 2, 1, 2, 1, 1}, {1, 1, 2, 2, 1, 2, 1, 2}}));
        ErrorCode code = success;
        const long long count =
            failEachAllocation([&] { code = session.analyse(command); },
                               [&] { EXPECT_TRUE(code == outOfMemory || code == graphNotBuilt) << code; });
        EXPECT_GT(count, 18);
    }
}
