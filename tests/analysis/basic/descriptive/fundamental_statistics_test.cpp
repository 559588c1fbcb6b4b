#include "analysis/basic/descriptive/fundamental_statistics.h"

#include <random>

#include "analysis/basic/descriptive/kendall_counts.h"
#include "analysis/basic/descriptive/rank_correlation.h"
#include "tests/support/analysis_session.h"

constexpr int command = 710;

TEST(KendallCounts, FastCountEqualsTheCountOfAllPairs) {
    constexpr Index samples = 2100; // more different values than one bucket holds
    std::mt19937 random(7);
    const auto uniform = [&](int values) {
        std::vector<double> column(samples);
        for (double& x : column) x = static_cast<double>(random() % static_cast<unsigned>(values));
        return column;
    };
    std::vector<double> tiny = uniform(50), huge = uniform(50), infinite = uniform(50),
                        constant(samples, 3.0);
    for (double& x : tiny) x *= 1e-200;          // products of differences vanish
    for (double& x : huge) x = (x - 25) * 7e306; // differences overflow
    infinite[3] = infinite[70] = INFINITY;
    const ColumnMatrix data = matrixOf({uniform(1000000), uniform(5000), uniform(5000), uniform(2),
                                        uniform(9), tiny, tiny, huge, infinite, constant});
    RankedColumns ranked;
    Block<std::uint32_t> scratch;
    ASSERT_EQ(ranked.allocate(data) | scratch.allocate(3 * samples), success);
    for (Index j = 0; j < 10; ++j) ranked.rank(data, j);
    for (int pair = 0; pair < 100; ++pair) {
        const Index i = pair / 10, j = pair % 10;
        if (i < 3 && j < i) continue; // both have many values; the other order is counted alike
        const KendallCounts plain = countAllPairs(data, i, j);
        const KendallCounts fast =
            countPairs(data, i, j, ranked.columns[i], ranked.columns[j], scratch.data());
        EXPECT_TRUE(plain.s == fast.s && plain.first == fast.first && plain.second == fast.second)
            << i << " " << j;
    }
}

// R 4.2: cov, moments of scale of v1 less 1e15, cor.test(exact = FALSE) of Kendall, and pt of Spearman's t.
// The mean of v1 lies between two doubles, and the rounded sum of v3 leaves deviations from a constant.
TEST(FundamentalStatistics, TextbookNumerics) {
    const std::vector<double> x = {1, 2, 2, 4, 7, 7, 10}, y = {1, 3, 2, 4, 3.5, 3.5, 6};
    std::vector<double> shifted = x;
    for (double& value : shifted) value += 1e15;
    AnalysisSession session(fileOf({shifted, y, std::vector<double>(7, 0.1)}));
    session.run.options.settings.fundamental = {1, 1, 1, 1};
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_STREQ(session.run.deviations,
                 "skew, kurtosis, covariance matrix, pr of spearman, z, prob of kendall");
    session.run.numerics = &textbookNumerics;
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_STREQ(session.run.deviations, "");
    EXPECT_TRUE(session.shows("statistics\n-- textbook numerics\n"));
    expectNear(session.row("basis", "variance"), {11.238095238, 2.488095238, 0}, 0.6e-6);
    expectNear(session.row("basis", "skew"), {0.303201433, 0.228985754, 0}, 0.6e-6);
    expectNear(session.row("basis", "kurtosis"), {-1.716937134, -1.048270181, 0}, 0.6e-6);
    expectNear(session.row("covariance", "v2"), {4.595238095, 2.488095238}, 0.6e-6);
    expectNear(session.row("speaman", "var1 & var2"),
               {6.5, -2.157439560, 0.030971432, 0.880771012, 0.008832623}, 0.6e-6);
    expectNear(session.row("kendall", "var1 & var2"), {0.769483764, 2.330457998, 0.019781957}, 0.6e-6);
}

// Six allocations rank the columns and two serve the pairs: without them the rank tables print zeros and the
// run succeeds. Every other one ends the run. Tables that are not printed ask for none.
TEST(FundamentalStatistics, FailingAllocations) {
    AnalysisSession session(fileOf({{1, 2, 4, 3, 5}, {5, 5, 7, 9, 8}}));
    ErrorCode code = success;
    int zeroTables = 0;
    const auto analyse = [&] { code = session.analyse(command); };
    for (const Numerics* numerics : {&classicNumerics, &textbookNumerics}) {
        session.run.numerics = numerics;
        const long long count = failEachAllocation(analyse, [&] {
            if (code == outOfMemory) {
                EXPECT_TRUE(
                    session.frontend.status.starts_with("error : failed to allocate memory for data."));
                return;
            }
            EXPECT_EQ(code, success);
            EXPECT_TRUE(session.shows("var1 & var2,   0.000000,   0.000000,   0.000000\n"));
            ++zeroTables;
        });
        EXPECT_EQ(count, 4 + 11 + 8 + 8);
    }
    EXPECT_EQ(zeroTables, 2 * 2 * 8); // alone, and with all after it
    session.run.options.settings.fundamental = {1, 1, 0, 0};
    EXPECT_EQ(failEachAllocation([&] { return session.analyse(command); }), 4 + 11 + 8);
}
