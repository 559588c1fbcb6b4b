#include "analysis/categorical/similarity/similarity.h"

#include "tests/support/analysis_session.h"

namespace {

constexpr int quantification4 = 731, principalCoordinates = 732;
using Columns = std::vector<std::vector<double>>;

double graphValue(const AnalysisSession& session, std::size_t item, std::size_t series) {
    const GraphSpec& graph = session.run.graph.spec;
    return graph.values[item * static_cast<std::size_t>(graph.seriesCount) + series];
}

// The similarities are the inner products of points in a plane. Their centred co-ordinates lie along the axes
// that an independent classical scaling of the distances finds, with these eigenvalues.
TEST(PrincipalCoordinates, FindThePointsBehindInnerProducts) {
    constexpr double points[5][2] = {{0, 0}, {4, 0}, {0, 2}, {2, 6}, {6, 2}};
    Columns columns(5);
    for (const auto& a : points) {
        for (std::size_t j = 0; j < 5; ++j) columns[j].push_back(a[0] * points[j][0] + a[1] * points[j][1]);
    }
    AnalysisSession session(fileOf(columns));
    ASSERT_EQ(session.analyse(principalCoordinates), success);
    expectNear(session.row("vector 1", "eigen"), {27.2, 24.0}, 1e-6);
    expectNear(session.row("vector 1", "communality"), {0.53125, 1.0}, 1e-6);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 25, 50, 75, 100}));

    ASSERT_EQ(session.run.graph.spec.seriesCount, 2);
    EXPECT_STREQ(session.run.graph.spec.seriesNames[1], "dimention 2");
    for (std::size_t i = 0; i < 5; ++i) { // the signs of the axes are free
        EXPECT_NEAR(graphValue(session, i, 0) * graphValue(session, 0, 0), (points[i][0] - 2.4) * -2.4,
                    1e-12);
        EXPECT_NEAR(graphValue(session, i, 1) * graphValue(session, 0, 1), (points[i][1] - 2) * -2, 1e-12);
    }
}

// The dialog chooses the kind; only square whole numbers pass, and three objects have a graph.
TEST(Similarity, ChecksTheMatrixForEachKind) {
    constexpr ErrorCode illegal = illegalSimilarityData;
    const std::tuple<Columns, ErrorCode, ErrorCode, bool> cases[] = {
        // codes of scaling and of the others, graph
        {{{9, 2, 3}, {2, 9, 4}, {3, 4, 9}}, success, success, true},
        {{{1, 2}, {2, 1}}, success, success, false},
        {{{7}}, success, success, false},
        {{{1, 2}, {2, 2.5}}, illegal, illegal, false},
        {{{1e308, 1e308}, {1e308, 1e308}}, success, eigenNotConvergent, false},
    };
    for (const auto& [columns, scaling, others, graph] : cases) {
        AnalysisSession session(fileOf(columns));
        for (int model = 0; model < 3; ++model) {
            session.frontend.choose = [model](AnalysisRun& run) {
                run.options.similarityModel = model;
                return true;
            };
            EXPECT_EQ(session.analyse(quantification4), model == 0 ? scaling : others)
                << columns.size() << ' ' << model;
            EXPECT_EQ(session.run.graph.present, graph && model > 0);
            const ErrorCode expected = model == 0 ? scaling : others;
            EXPECT_EQ(session.isTheSameByTextbook(quantification4), expected == success);
        }
    }
    AnalysisSession session(fileOf({{4, 2, 0}, {2, 4, 1}, {0, 1, 4}}));
    for (const int command : {quantification4, principalCoordinates})
        EXPECT_GT(session.failAllocations(command, {outOfMemory, graphNotBuilt}), 0);
}

} // namespace
