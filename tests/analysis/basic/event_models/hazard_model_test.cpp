#include "analysis/basic/event_models/hazard_model.h"

#include "tests/support/analysis_session.h"

namespace {

constexpr int command = 742;
using Columns = std::vector<std::vector<double>>;

const Columns samples = {{1, 0, 1, 1, 1, 0, 1, 1, 0, 1, 1, 1},
                         {5, 8, 8, 12, 3, 20, 8, 15, 12, 7, 20, 9},
                         {2, 3, 5, 1, 4, 2, 3, 1, 5, 4, 1, 2},
                         {10, 14, 9, 12, 15, 11, 8, 13, 10, 12, 9, 14}};

// The sums over the risk sets are kept relative to their largest term, so that predictors in the thousands
// pass.
TEST(Hazard, StrongEffectsDoNotOverflow) {
    Columns columns(3);
    for (int s = 0; s < 400; ++s) {
        columns[0].push_back(1);
        columns[1].push_back(401 - s);
        columns[2].push_back(s % 40 == 7 ? s - 3 : s); // not quite separated
    }
    AnalysisSession session(fileOf(columns));
    ASSERT_EQ(session.analyse(command), success);
    const std::vector<double> row = session.row("coefficient", "v3");
    EXPECT_GT(row[0] * 400, 200.0);
    for (const double value : row) EXPECT_TRUE(std::isfinite(value));
}

// Alike in every risk set of an event, at which nothing but rounding could tell its effect.
TEST(Hazard, CovariateOfTheSamplesThatLeftEarlyIsSingular) {
    const std::vector<double> x = {0.07, -0.18, 0.34, 0.83, -0.09, -0.55, 0.7, -0.51};
    AnalysisSession session(
        fileOf({{0, 0, 1, 0, 1, 0, 0, 0}, {9, 1, 3, 2, 8, 5, 6, 10}, x, {0, 4, 0, 2, 0, 0, 0, 0}}));
    EXPECT_EQ(session.analyse(command), newtonRaphsonSingular);
}

TEST(Hazard, GraphShowsTheSurvival) {
    AnalysisSession session(fileOf(samples));
    ASSERT_EQ(session.analyse(command), success);
    const GraphSpec& graph = session.run.graph.spec;
    ASSERT_TRUE(graph.seriesCount == 3 && graph.itemCount == 8 && graph.vectorCount == 1);
    EXPECT_STREQ(graph.seriesNames[2], "cumulative hazard");
    EXPECT_STREQ(graph.itemLabels[3], "event 4");
    const std::vector<double> row = session.row("baseline", "event 4");
    expectNear({graph.values[9], graph.values[10], graph.values[11]}, {row[0], row[4], row[3]}, 1e-11);

    EXPECT_TRUE(session.isTheSameByTextbook(command));
    session.run.options.settings.expressGraph = 0;
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_FALSE(session.run.graph.present);
    session.run.options.settings.expressGraph = 1;
    session.failAllocations(command, {outOfMemory, graphNotBuilt});
    EXPECT_EQ(session.analyse(command), success);
}

} // namespace
