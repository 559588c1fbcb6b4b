#include "analysis/categorical/similarity.h"

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
    EXPECT_STREQ(session.run.graph.spec.seriesNames[1].text, "dimention 2");
    for (std::size_t i = 0; i < 5; ++i) { // the signs of the axes are free
        EXPECT_NEAR(graphValue(session, i, 0) * graphValue(session, 0, 0), (points[i][0] - 2.4) * -2.4,
                    1e-12);
        EXPECT_NEAR(graphValue(session, i, 1) * graphValue(session, 0, 1), (points[i][1] - 2) * -2, 1e-12);
    }
}

// Neither symmetric nor with a diagonal that counts.
TEST(Quantification4, TakesEigenvectorsOfTheMatrixWhoseRowsSumTo0) {
    const Columns columns = {{9, 1, 4, 0}, {3, -5, 2, 2}, {0, 6, 7, 1}, {5, 2, 0, 100}};
    double h[4][4] = {};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            if (i == j) continue;
            h[i][j] = columns[i][j] + columns[j][i];
            h[i][i] -= h[i][j];
        }
    }
    AnalysisSession session(fileOf(columns));
    std::int32_t& dimensions = session.run.options.settings.similarity.dimensions;
    dimensions = 9;
    ASSERT_EQ(session.analyse(quantification4), success);
    const std::vector<double> eigenvalues = session.row("eigen value", "eigen");
    ASSERT_EQ(eigenvalues.size(), 4u);
    EXPECT_TRUE(std::is_sorted(eigenvalues.rbegin(), eigenvalues.rend()));
    EXPECT_NEAR(eigenvalues[0], 0.0, 1e-6);
    for (std::size_t k = 0; k < 4; ++k) {
        double length = 0.0;
        for (std::size_t i = 0; i < 4; ++i) {
            double product = 0.0;
            for (std::size_t j = 0; j < 4; ++j) product += h[i][j] * graphValue(session, j, k);
            EXPECT_NEAR(product, eigenvalues[k] * graphValue(session, i, k), 1e-6);
            length += graphValue(session, i, k) * graphValue(session, i, k);
        }
        EXPECT_NEAR(length, 1.0, 1e-12);
    }
    for (const auto& [option, columnCount] : {std::pair{2, 2U}, {0, 1U}, {-7, 1U}, {99, 4U}}) {
        dimensions = option; // limits the report only
        ASSERT_EQ(session.analyse(quantification4), success);
        EXPECT_EQ(session.row("eigen value", "eigen").size(), columnCount);
        EXPECT_EQ(session.row("eigen vector", "s1").size(), columnCount);
        EXPECT_EQ(session.run.graph.spec.seriesCount, 4);
    }
    for (const auto& [up, end] : {std::pair{false, 1}, {true, 3}}) {
        for (int click = 0; click < 200; ++click) {
            spinOption(session.run.options, similarityAnalysis.fields[1], session.run.data, up);
        }
        EXPECT_EQ(dimensions, end);
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
        }
    }
    AnalysisSession session(fileOf({{4, 2, 0}, {2, 4, 1}, {0, 1, 4}}));
    for (const int command : {quantification4, principalCoordinates})
        EXPECT_GT(session.failAllocations(command, {outOfMemory, graphNotBuilt}), 0);
}

} // namespace
