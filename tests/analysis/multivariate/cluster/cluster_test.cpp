#include "analysis/multivariate/cluster/cluster.h"

#include <random>

#include "analysis/multivariate/cluster/dendrogram.h"
#include "tests/analysis/multivariate/cluster/plain_merging.h"
#include "tests/support/analysis_session.h"

namespace {

constexpr int command = 717;

struct ClusterSession : AnalysisSession {
    ClusterSession(const std::vector<std::vector<double>>& columns, ClusterOptions options)
        : AnalysisSession(fileOf(columns)) {
        run.options.settings.cluster = options;
    }
};

} // namespace

// Few values, so many ties, growing and shrinking distances, and what is no number: both ways must agree in
// every bit, and in failing.
TEST(ClusterMerging, EqualsThePlainWay) {
    std::mt19937 random(5);
    // clang-format off
    const std::vector<double> values[] = {{0, 1}, {2}, {1, 2, 3, 4}, {-3, -1, 0, 2},
                                          {1, 2, NAN, INFINITY, 1e300, 1e299}, {0.1, 0.2, 0.3, 7e150}};
    // clang-format on
    const auto bytes = [](const Block<ClusterMerge>& merges) {
        return std::string_view(reinterpret_cast<const char*>(merges.data()),
                                merges.size() * sizeof(ClusterMerge));
    };
    for (int trial = 0; trial < 1800; ++trial) {
        const Index n = trial < 1764 ? 1 + random() % 24 : 90;
        const std::vector<double>& from = values[trial / 6 % 6];
        ClusterMerging fast, plain;
        ASSERT_EQ(fast.allocate(n) | plain.allocate(n), success);
        for (Index at = 0; at < fast.distances.size(); ++at)
            fast.distances[at] = plain.distances[at] = from[random() % from.size()];
        EXPECT_EQ(mergeClusters(trial % 6, fast), mergePlainly(trial % 6, plain));
        ASSERT_TRUE(bytes(fast.merges) == bytes(plain.merges)) << trial;
    }
}

// Samples at 0, 1, 3 and 7, merged on paper with the coefficients of each criterion. Levels are squared
// distances and printed as roots, but for the median, which starts from the roots.
TEST(Cluster, MergesByHand) {
    const double centroid = 55 / 12.0 * 16 + (405 / 98.0 + 9 / 14.0 * 98 + 63) + 3.5 * (9 / 14.0 * 72 + 28);
    const double levels[6][2] = {{89 / 6.0, 809 / 6.0}, {13, 124.9}, {4 * 4, 45.05 * 45.05}, {16, 748},
                                 {16, centroid},        {12, 112}};
    for (int criterion = 0; criterion < 6; ++criterion) {
        ClusterSession session({{0, 1, 3, 7}}, {0, 2, criterion});
        ASSERT_EQ(session.analyse(command), success);
        const bool chain = criterion < 2 || criterion == 5; // else two pairs first; the third cell is "->"
        const double *level = levels[criterion], second = chain ? 2 : 3;
        expectNear(session.row("uniting", "1"), {1, 0, 2, 1}, 0);
        expectNear(session.row("uniting", "2"), {second, 0, second + 1, std::sqrt(level[0])}, 1e-9);
        expectNear(session.row("uniting", "3"), {chain ? 3.0 : 2.0, 0, 4, std::sqrt(level[1])}, 1e-9);
    }
}

// The closest two points are (1, 2) and (2, 4) for every distance.
TEST(Cluster, Distances) {
    const double vx = 66 / 5.0 - 3.2 * 3.2, vy = 146 / 5.0 - 4.8 * 4.8, cxy = 94 / 5.0 - 3.2 * 4.8;
    const double levels[] = {(vy + 4 * vx - 4 * cxy) / (vx * vy - cxy * cxy), 1 / vx + 4 / vy, 5};
    for (int distance = 0; distance < 3; ++distance) {
        ClusterSession session({{1, 2, 3, 4, 6}, {2, 4, 6, 3, 9}}, {0, distance, 5});
        ASSERT_EQ(session.analyse(command), success);
        EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 15, 30, 50, 75, 100}));
        EXPECT_NEAR(session.row("uniting", "1").back(), std::sqrt(levels[distance]), 1e-9) << distance;
        EXPECT_GT(session.failAllocations(command), 8);
    }
}

// All variables count as equally far apart; one alone has nothing to merge with. The second options are what
// a spoilt settings file may have.
TEST(Cluster, Variables) {
    const std::vector<double> x = {1, 1, 1, 1, 1, 1};
    ClusterSession session({x, x, x}, {1, 0, 2}), alone({x}, {7, -9, 99});
    ASSERT_EQ(session.analyse(command) | alone.analyse(command), success);
    EXPECT_NEAR(session.row("uniting", "1").back(), std::sqrt(2.0), 1e-9);
    EXPECT_NEAR(session.row("uniting", "2").back(), (-0.25 + 2 * 0.6) * std::sqrt(2.0), 1e-9);
    EXPECT_TRUE(session.shows("  3,      3,         v3,---+--\n\n"));
    EXPECT_TRUE(alone.shows("  1,      1,         v1,\n\n"));
    EXPECT_TRUE(
        alone.frontend.status.ends_with(" -- divided by variable, mahalanobis distance, Ward's method"));
}

// z = 2 x + y of x and y without correlation has those of 2 and 1 over the root of 5 with them.
TEST(TextbookCluster, VariablesByTheirCorrelations) {
    ClusterSession session(
        {{1, 1, -1, -1, 1, 1, -1, -1}, {1, -1, -1, 1, 1, -1, -1, 1}, {3, 1, -3, -1, 3, 1, -3, -1}},
        {1, 0, 1});
    EXPECT_EQ(session.analyse(command), success);
    EXPECT_STREQ(session.run.deviations, "unit cluster, distance, dendrogram");
    session.run.numerics = &textbookNumerics;
    ASSERT_EQ(session.analyse(command), success);
    expectNear(session.row("uniting", "1"), {1, 0, 3, std::sqrt(2 - 4 / std::sqrt(5.0))}, 1e-9);
    expectNear(session.row("uniting", "2"), {2, 0, 3, std::sqrt(2.0)}, 1e-9);

    ClusterSession constant({{1, 2, 4, 7, 5}, {3, 3, 3, 3, 3}}, {1, 0, 1});
    constant.run.numerics = &textbookNumerics;
    EXPECT_EQ(constant.analyse(command), illegalData);
}

TEST(Cluster, ManyItems) {
    for (const std::size_t items : {999U, 1000U, 1001U}) {
        std::vector<double> column(items);
        for (std::size_t s = 0; s < items; ++s) column[s] = static_cast<double>(s * s % 1009);
        ClusterSession session({column}, {0, 2, 0});
        ASSERT_EQ(session.analyse(command), success);
        EXPECT_EQ(session.shows("\n---,   1000,"), items == 1001);
        EXPECT_EQ(session.shows("\n---,      1,"), items >= 1000);
        EXPECT_TRUE(session.shows("\n  2,      2,         s2,"));

        // The window's text has room for a part only.
        const std::string whole = session.frontend.lower, notice = "-- cut at 1048576 characters\n";
        ASSERT_EQ(allocateReport(session.run.report, TextBuffer::Growth::fixed), success);
        ASSERT_EQ(session.analyse(command), success);
        const std::string& part = session.frontend.lower;
        EXPECT_EQ(part, whole.substr(0, part.size() - notice.size()) + notice);
        EXPECT_GT(part.size(), 1048576U - 2100U);
    }
}

TEST(Cluster, Codes) {
    const std::vector<double> x = {1, 2, 4, 8, 5, 7}, constant(6, 3.0),
                              huge = {1e200, -1e200, 0, 1e200, 0, 3};
    // One code for each distance.
    const std::pair<std::vector<std::vector<double>>, std::vector<ErrorCode>> cases[] = {
        {{x, x, constant}, {illegalData, illegalData, success}},
        {{x, x}, {singularMatrix, success, success}},
        {{x, huge}, {singularMatrix, success, illegalData}}};
    for (const auto& [columns, codes] : cases) {
        for (std::size_t distance = 0; distance < 3; ++distance) {
            ClusterSession session(columns, {0, static_cast<int>(distance), 3});
            EXPECT_EQ(session.analyse(command), codes[distance]);
            EXPECT_EQ(session.shows("dendrogram"), codes[distance] == success);
        }
    }
}
