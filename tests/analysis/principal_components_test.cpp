#include "analysis/multivariate/principal_components.h"

#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 712;

std::string arrests() {
    return readTextFile("reference/data/USArrests.csv");
}

void choose(AnalysisSession& session, int base, int limit = 99, double minimum = 0) {
    session.frontend.choose = [=](AnalysisRun& run) {
        run.options.settings.factor.factorNumber = limit;
        run.options.settings.componentBase = base;
        run.options.settings.componentMinimum = minimum;
        return true;
    };
}

} // namespace

// An independent computation from the matrices with divisor n; the chi-squares by Bartlett's formula with the
// kept correction.
TEST(PrincipalComponents, StatisticsOfBothBases) {
    const std::vector<double> bases[][4] = {{{2.4802415791, 0.9897651525, 0.3565631806, 0.1734300877},
                                             {89.38782129, 35.24685542, 5.882814378, 0},
                                             {0.62006039, 0.24744129, 0.08914080, 0.04335752},
                                             {0.84397644, 0.62580448, 0.6e-6}},
                                            {{6870.892554, 197.952519, 41.2703977, 6.04096126},
                                             {488.0848598, 112.3407249, 37.22068579, 0},
                                             {0.96553422, 0.02781734, 0.00579953, 0.00084891},
                                             {3.45690647, 0.74477773, 0.6e-5}}};
    for (int base = 0; base < 2; ++base) {
        const auto& [eigenvalues, chiSquares, ratios, others] = bases[base];
        AnalysisSession session(arrests());
        choose(session, base);
        ASSERT_EQ(session.analyse(command), success);
        expectNear(session.row("factor", "eigen value"), eigenvalues, others[2]);
        expectNear(session.row("factor", "ratio"), ratios, 0.6e-6);
        expectNear(session.row("factor", "chi square"), chiSquares, others[2]);
        // Two degrees of freedom, an exponential tail.
        EXPECT_NEAR(session.row("factor", "chi prob")[2], std::exp(-chiSquares[2] / 2), 0.6e-6);
        expectNear(session.row("factor", "freedom"), {9, 5, 2, 0}, 0);
        EXPECT_NEAR(std::fabs(session.row("load", "Murder")[0]), others[0], others[2]);
        EXPECT_NEAR(std::fabs(session.row("score", "Alabama")[0]), others[1], 0.6e-6);
    }
}

// With all components the loadings give the correlations back (1 on the diagonal), and the standardised
// scores are uncorrelated; the graph holds both in full precision.
TEST(PrincipalComponents, GraphAndIdentities) {
    AnalysisSession session(arrests());
    choose(session, 0);
    session.run.options.settings.scatterNumbering = session.run.options.settings.vectorSizing = 1;
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 20, 40, 60, 80, 100}));
    ASSERT_TRUE(session.run.graph.present);
    const GraphSpec& spec = session.run.graph.spec;
    EXPECT_TRUE(spec.kind == 7 && spec.seriesCount == 4 && spec.itemCount == 50 && spec.vectorCount == 4);
    EXPECT_TRUE(spec.numbering == 1 && spec.vectorOption == 1);
    EXPECT_STREQ(spec.seriesNames[3].text, "factor 4");
    EXPECT_STREQ(spec.itemLabels[49].text, "Wyoming");
    EXPECT_STREQ(spec.vectorNames[3].text, "Rape");
    for (std::size_t a = 0; a < 4; ++a) {
        double length = 0;
        for (std::size_t b = 0; b < 4; ++b) {
            double moment = 0;
            length += spec.vectorValues[a * 4 + b] * spec.vectorValues[a * 4 + b];
            for (std::size_t i = 0; i < 50; ++i) moment += spec.values[i * 4 + a] * spec.values[i * 4 + b];
            EXPECT_NEAR(moment / 50, a == b ? 1 : 0, 1e-12);
        }
        EXPECT_NEAR(length, 1, 1e-12);
    }
    ErrorCode code = success;
    EXPECT_GT(failEachAllocation([&] { code = session.analyse(command); },
                                 [&] { EXPECT_TRUE(code == outOfMemory || code == graphNotBuilt) << code; }),
              20);
}

TEST(PrincipalComponents, NumberOfComponents) {
    const std::tuple<int, double, std::size_t> cases[] = {{0, 0, 0},   {-5, 0, 0}, {4, 99, 0}, {4, 0.5, 2},
                                                          {1, 0.5, 1}, {4, -1, 4}, {4, NAN, 0}};
    for (const auto& [limit, minimum, kept] : cases) {
        AnalysisSession session(arrests());
        choose(session, 0, limit, minimum);
        EXPECT_EQ(session.analyse(command), kept < 2 ? graphNotBuilt : success);
        EXPECT_EQ(session.row("ratio contributed", "chi square").size(), kept);
        EXPECT_EQ(session.row("component score", "Ohio").size(), kept);
        EXPECT_EQ(session.frontend.log.find("too few vector number/alert") != std::string::npos, kept < 2);
    }
}

TEST(PrincipalComponents, Spins) {
    AnalysisSession session(arrests());
    AnalysisOptions& options = session.run.options;
    const std::tuple<double, bool, double> spins[][4] = {
        {{3, true, 4}, {4, true, 4}, {2, false, 1}, {1, false, 1}},
        {{0.05, false, -0.05}, {-0.05, false, -0.05}, {999.85, true, 999.95}, {999.9, true, 999.9}}};
    for (const auto& [from, up, to] : spins[0]) {
        options.settings.factor.factorNumber = static_cast<int>(from);
        spinOption(options, principalComponents.fields[0], session.run.data, up);
        EXPECT_EQ(options.settings.factor.factorNumber, to);
    }
    for (const auto& [from, up, to] : spins[1]) {
        options.settings.componentMinimum = from;
        spinOption(options, principalComponents.fields[1], session.run.data, up);
        EXPECT_NEAR(options.settings.componentMinimum, to, 1e-12);
    }
}

TEST(PrincipalComponents, Codes) {
    const std::vector<double> x = {1, 2, 4, 8, 5, 7}, constant(6, 3.0), huge = {0, 1e200, 0, 0, 1, 2};
    const std::pair<std::vector<std::vector<double>>, ErrorCode> cases[] = {
        {{x, constant}, illegalData}, {{x, constant, huge}, notFinite}, {{x, {2, 1, 4, 3, 5, 5}}, success}};
    for (const auto& [columns, code] : cases) {
        AnalysisSession session(fileOf(columns));
        choose(session, 1);
        EXPECT_EQ(session.analyse(command), code);
        EXPECT_EQ(session.frontend.lower.find("principal") != std::string::npos, code == success);
        EXPECT_NE(session.frontend.log.find("progress hidden"), std::string::npos);
    }
}
