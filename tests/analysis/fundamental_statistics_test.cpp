#include "analysis/basic/fundamental_statistics.h"

#include <cmath>
#include <random>

#include "analysis/basic/basic_statistics.h"
#include "analysis/basic/kendall_counts.h"
#include "analysis/basic/rank_correlation.h"
#include "analysis/run/run_flow.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/recording_frontend.h"

namespace {

// Columns given one after the other, as a data matrix.
DataMatrix matrixOf(const std::vector<std::vector<double>>& columns) {
    DataMatrix data;
    data.variables = static_cast<std::int32_t>(columns.size());
    data.samples = static_cast<std::int32_t>(columns[0].size());
    EXPECT_EQ(data.values.allocate(data.count()), success);
    for (std::size_t j = 0; j < columns.size(); ++j) {
        for (std::size_t s = 0; s < columns[j].size(); ++s) data.values[s * columns.size() + j] = columns[j][s];
    }
    return data;
}

std::string runOn(const std::string& text, const std::function<void(FundamentalOptions&)>& change = [](auto&) {}) {
    RecordingFrontend frontend;
    AnalysisRun run;
    startRun(run);
    change(run.options.settings.fundamental);
    EXPECT_EQ(loadText(frontend, run, text), success);
    Settings defaults = run.options.settings;
    runAnalysisCommand(frontend, defaults, run, 710);
    return frontend.lower;
}

} // namespace

TEST(KendallCounts, FastCountEqualsTheCountOfAllPairs) {
    std::mt19937 random(7);
    const auto uniform = [&](int values) {
        std::vector<double> column(101);
        for (double& x : column) x = static_cast<double>(random() % static_cast<unsigned>(values));
        return column;
    };
    std::vector<double> tiny = uniform(50), huge = uniform(50), infinite = uniform(50), constant(101, 3.0);
    for (double& x : tiny) x *= 1e-200;       // products of differences vanish
    for (double& x : huge) x = (x - 25) * 7e306; // differences overflow
    infinite[3] = infinite[70] = INFINITY;
    const DataMatrix data =
        matrixOf({uniform(1000000), uniform(1000000), uniform(2), uniform(9), tiny, tiny, huge, infinite, constant});
    RankedColumns ranked;
    ASSERT_EQ(ranked.rank(data), success);
    Block<std::int32_t> scratch;
    ASSERT_EQ(scratch.allocate(3 * 101), success);
    for (std::int32_t i = 0; i < data.variables; ++i) {
        for (std::int32_t j = 0; j < data.variables; ++j) {
            const KendallCounts plain = countAllPairs(data, i, j);
            const KendallCounts fast = countPairs(data, i, j, ranked.columns[static_cast<std::size_t>(i)],
                                                  ranked.columns[static_cast<std::size_t>(j)], scratch.data());
            EXPECT_EQ(plain.s, fast.s) << i << " " << j;
            EXPECT_EQ(plain.first, fast.first) << i << " " << j;
            EXPECT_EQ(plain.second, fast.second) << i << " " << j;
        }
    }
}

// Worked out on paper: x = 1 2 2 4, y = 10 30 20 40 has ranks 1 2.5 2.5 4 and 1 3 2 4.
TEST(RankCorrelation, TiesHaveMeanRanksAndCorrectTheMoments) {
    RecordingFrontend frontend;
    const DataMatrix data = matrixOf({{1, 2, 2, 4}, {10, 30, 20, 40}, {5, 5, 5, 5}});
    SpearmanTable spearman;
    KendallTable kendall;
    ASSERT_EQ(spearman.allocate(3) | kendall.allocate(3), success);
    ASSERT_EQ(rankCorrelations(frontend, data, spearman, kendall), success);

    const double e = 60, fac = 1 - 6.0 / e;
    EXPECT_DOUBLE_EQ(spearman.d[0], 0.5);
    EXPECT_DOUBLE_EQ(spearman.zd[0], (0.5 - (10 - 0.5)) / std::sqrt(3.0 * 16 * 25 / 36 * fac));
    EXPECT_DOUBLE_EQ(spearman.rs[0], (1 - 0.1 * (0.5 + 0.5)) / std::sqrt(fac));
    // The incomplete beta function of this program stops at its first factor, x^a (1 - x)^b / (a B(a, b)) or
    // its complement; with a = 1, b = 1/2, B(a, b) = 2 and t2 = rs^2 2 / fac = 2 it is taken at x = 1/2.
    EXPECT_NEAR(spearman.pr[0], 0.5 * std::sqrt(0.5) / 2, 1e-8);
    EXPECT_DOUBLE_EQ(kendall.tau[0], 5 / (std::sqrt(5.0) * std::sqrt(6.0)));
    EXPECT_DOUBLE_EQ(kendall.z[0], kendall.tau[0] / std::sqrt(26.0 / 108.0));
    EXPECT_NEAR(kendall.prob[0], std::erfc(kendall.z[0] / std::sqrt(2.0)), 1.2e-7);
    // A constant column: one run of all, no tie factor left.
    EXPECT_EQ(spearman.pr[1], 0.0);
    EXPECT_TRUE(std::isnan(kendall.tau[1]));
    EXPECT_EQ(frontend.percentages, (std::vector<int>{85, 100}));
}

TEST(BasicStatistics, NineStatisticsByHand) {
    RecordingFrontend frontend;
    const DataMatrix data = matrixOf({{4, 1, 2, 3, 10}, {7, 7, 7, 7, 7}, {-2, 0, 2, 0, 0}});
    BasicStatistics basic;
    ASSERT_EQ(basic.allocate(3, 5), success);
    basicStatistics(frontend, data, basic);
    const struct {
        double maximum, minimum, mean, median, averageDeviation, variance, skew, kurtosis;
    } expected[] = {{10, 1, 4, 3, 2.4, 12.5, 180 / (5 * 12.5 * std::sqrt(12.5)), 1394 / (5 * 156.25) - 3},
                    {7, 7, 7, 7, 0, 0, 0, 0},
                    {2, -2, 0, 0, 0.8, 2, 0, 32 / 20.0 - 3}};
    for (std::size_t j = 0; j < 3; ++j) {
        EXPECT_EQ(basic.maximum[j], expected[j].maximum);
        EXPECT_EQ(basic.minimum[j], expected[j].minimum);
        EXPECT_DOUBLE_EQ(basic.mean[j], expected[j].mean);
        EXPECT_DOUBLE_EQ(basic.median[j], expected[j].median);
        EXPECT_DOUBLE_EQ(basic.averageDeviation[j], expected[j].averageDeviation);
        EXPECT_DOUBLE_EQ(basic.variance[j], expected[j].variance);
        EXPECT_DOUBLE_EQ(basic.standardDeviation[j], std::sqrt(expected[j].variance));
        EXPECT_NEAR(basic.skew[j], expected[j].skew, 1e-14);
        EXPECT_NEAR(basic.kurtosis[j], expected[j].kurtosis, 1e-14);
    }
}

TEST(FundamentalStatistics, OptionsChooseTheTables) {
    const std::string data = "l,x,y\na,1,5\nb,2,5\nc,4,7\nd,3,9\ne,5,8\n";
    const struct {
        FundamentalOptions options;
        bool covariance, correlation, spearman, kendall;
        const char* end;
    } cases[] = {
        {{1, 1, 1, 1}, true, true, true, true, "\n\n"},
        {{0, 1, 0, 0}, false, true, false, false, "1.000000\n\n"},
        {{1, 0, 1, 0}, true, false, true, false, "\n\n"},
        {{0, 0, 0, 1}, false, false, false, true, "\n\n"},
    };
    for (const auto& one : cases) {
        const std::string report = runOn(data, [&](FundamentalOptions& options) { options = one.options; });
        const auto has = [&](const char* title) { return report.find(title) != std::string::npos; };
        EXPECT_EQ(has("\tcovariance matrix\n"), one.covariance);
        EXPECT_EQ(has("\tcorrelation matrix\n"), one.correlation);
        EXPECT_EQ(has("\tspeaman's ranking correlation coefficients\n"), one.spearman);
        EXPECT_EQ(has("\tkendall's ranking correlation coefficients\n"), one.kendall);
        EXPECT_TRUE(report.ends_with(one.end));
    }
}

TEST(FundamentalStatistics, OneVariableHasRankTablesOfHeadingsOnly) {
    const std::string report = runOn("l,x\na,1\nb,2\nc,4\nd,3\n");
    EXPECT_NE(report.find("\tspeaman's ranking correlation coefficients\n"
                          "  n,         r.item,          D,         zd,         pd,         rs,         pr\n\n"
                          "\tkendall's ranking correlation coefficients\n"
                          "  n,         r.item,        tau,          z,       prob\n\n"),
              std::string::npos);
}

// Six allocations rank the columns and one counts: without them the rank tables print zeros and the run
// succeeds. Every other one ends the run.
TEST(FundamentalStatistics, FailingAllocations) {
    RecordingFrontend frontend;
    AnalysisRun run;
    startRun(run);
    ASSERT_EQ(loadText(frontend, run, "l,x,y\na,1,5\nb,2,5\nc,4,7\nd,3,9\ne,5,8\n"), success);
    Settings defaults = run.options.settings;
    ErrorCode code = success;
    int zeroTables = 0;
    const long long count = failEachAllocation(
        [&] { code = runAnalysisCommand(frontend, defaults, run, 710); },
        [&] {
            if (code == outOfMemory) {
                EXPECT_EQ(frontend.status, "error : failed to allocate memory for data.");
                return;
            }
            EXPECT_EQ(code, success);
            EXPECT_NE(frontend.lower.find("var1 & var2,   0.000000,   0.000000,   0.000000\n"), std::string::npos);
            ++zeroTables;
        });
    EXPECT_EQ(count, 4 + 10 + 8 + 7);
    EXPECT_EQ(zeroTables, 7);
}
