#include "analysis/multivariate/components/principal_components.h"

#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 712;

struct ArrestsSession : AnalysisSession {
    ArrestsSession() : AnalysisSession(readTextFile("reference/data/USArrests.csv")) {}
};

ErrorCode analyse(AnalysisSession& session, int base, int limit = 99, double minimum = 0) {
    return session.analyse(command, [=](AnalysisOptions& options) {
        options.settings.factor.factorNumber = limit;
        options.settings.componentBase = base;
        options.settings.componentMinimum = minimum;
    });
}

} // namespace

// An independent computation from the covariance matrix with divisor n; the chi-squares by Bartlett's formula
// with the kept correction.
TEST(PrincipalComponents, StatisticsOfTheCovarianceBase) {
    ArrestsSession session;
    ASSERT_EQ(analyse(session, 1), success);
    expectNear(session.row("factor", "eigen value"), {6870.892554, 197.952519, 41.2703977, 6.04096126},
               0.6e-5);
    expectNear(session.row("factor", "ratio"), {0.96553422, 0.02781734, 0.00579953, 0.00084891}, 0.6e-6);
    expectNear(session.row("factor", "chi square"), {488.0848598, 112.3407249, 37.22068579, 0}, 0.6e-5);
    // Two degrees of freedom, an exponential tail.
    EXPECT_NEAR(session.row("factor", "chi prob")[2], std::exp(-37.22068579 / 2), 0.6e-6);
    expectNear(session.row("factor", "freedom"), {9, 5, 2, 0}, 0);
    EXPECT_NEAR(std::fabs(session.row("load", "Murder")[0]), 3.45690647, 0.6e-5);
    EXPECT_NEAR(std::fabs(session.row("score", "Alabama")[0]), 0.74477773, 0.6e-6);
}

TEST(PrincipalComponents, Deviations) {
    ArrestsSession session;
    ASSERT_EQ(analyse(session, 1), success);
    EXPECT_STREQ(session.run.deviations, "eigen value, score, chi square");
    ASSERT_EQ(analyse(session, 0, 2), success); // nothing deviates from its last digits before the third
    EXPECT_STREQ(session.run.deviations, "chi prob");
    session.run.numerics = &textbookNumerics;
    ASSERT_EQ(analyse(session, 1), success);
    EXPECT_STREQ(session.run.deviations, "");
}

// With all components the loadings give the correlations back (1 on the diagonal), and the standardized
// scores are uncorrelated; the graph holds both in full precision.
TEST(PrincipalComponents, GraphAndIdentities) {
    ArrestsSession session;
    session.run.options.settings.scatterNumbering = session.run.options.settings.vectorSizing = 1;
    ASSERT_EQ(analyse(session, 0), success);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 20, 40, 60, 80, 100}));
    ASSERT_TRUE(session.run.graph.present);
    const GraphSpec& spec = session.run.graph.spec;
    EXPECT_TRUE(spec.kind == GraphKind::biplot && spec.seriesCount == 4 && spec.itemCount == 50 &&
                spec.vectorCount == 4);
    EXPECT_TRUE(spec.numbering == 1 && spec.vectorOption == 1);
    EXPECT_STREQ(spec.seriesNames[3], "factor 4");
    EXPECT_STREQ(spec.itemLabels[49], "Wyoming");
    EXPECT_STREQ(spec.vectorNames[3], "Rape");
    for (std::size_t a = 0; a < 4; ++a) {
        double length = 0;
        for (std::size_t b = 0; b < 4; ++b) {
            double moment = 0;
            length += std::pow(spec.vectorValues[a * 4 + b], 2);
            for (std::size_t i = 0; i < 50; ++i) moment += spec.values[i * 4 + a] * spec.values[i * 4 + b];
            EXPECT_NEAR(moment / 50, a == b ? 1 : 0, 1e-12);
        }
        EXPECT_NEAR(length, 1, 1e-12);
    }
    EXPECT_GT(session.failAllocations(command, {outOfMemory, graphNotBuilt}), 20);
}

TEST(PrincipalComponents, NumberOfComponents) {
    const std::tuple<int, double, std::size_t> cases[] = {{0, 0, 0},   {-5, 0, 0}, {4, 99, 0}, {4, 0.5, 2},
                                                          {1, 0.5, 1}, {4, -1, 4}, {4, NAN, 0}};
    for (const auto& [limit, minimum, kept] : cases) {
        ArrestsSession session;
        EXPECT_EQ(analyse(session, 0, limit, minimum), kept < 2 ? graphNotBuilt : success);
        EXPECT_EQ(session.row("ratio contributed", "chi square").size(), kept);
        EXPECT_EQ(session.row("component score", "Ohio").size(), kept);
        EXPECT_EQ(session.frontend.log.find("too few vector number/alert") != std::string::npos, kept < 2);
    }
}

TEST(PrincipalComponents, Codes) {
    const std::vector<double> x = {1, 2, 4, 8, 5, 7}, constant(6, 3.0), huge = {0, 1e200, 0, 0, 1, 2};
    const std::pair<std::vector<std::vector<double>>, ErrorCode> cases[] = {
        {{x, constant}, illegalData}, {{x, constant, huge}, notFinite}, {{x, {2, 1, 4, 3, 5, 5}}, success}};
    for (const auto& [columns, code] : cases) {
        AnalysisSession session(fileOf(columns));
        for (const Numerics* numerics : {&classicNumerics, &textbookNumerics}) {
            session.run.numerics = numerics;
            EXPECT_EQ(analyse(session, 1), code);
            EXPECT_EQ(session.shows("principal"), code == success);
        }
    }
    // A small unit is no constant.
    AnalysisSession small(fileOf({{1e-5, 2e-5, 4e-5, 3e-5, 7e-5}, {2, 1, 4, 3, 5}}));
    EXPECT_EQ(analyse(small, 0), illegalData);
    small.run.numerics = &textbookNumerics;
    EXPECT_EQ(analyse(small, 0), success);
}
