#include "analysis/basic/descriptive/rank_correlation.h"

#include <cmath>

#include "analysis/basic/descriptive/kendall_counts.h"
#include "analysis/run/textbook_deviation.h"

namespace {

// What takes long of a pair of columns.
struct PairSums {
    KendallCounts kendall;
    double squaredDifferences; // of the ranks
};

struct Kendall {
    double tau;
    double z;
};

double tauOf(const KendallCounts& counts) {
    return counts.s / (std::sqrt(counts.first) * std::sqrt(counts.second));
}

double textbookZ(const KendallCounts& counts, double n, const RankedColumn& first,
                 const RankedColumn& second) {
    return counts.s / std::sqrt(kendallVariance(static_cast<Index>(n), first.ties, second.ties));
}

// z has the variance of tau without ties.
Kendall classicKendall(const KendallCounts& counts, double n, const RankedColumn&, const RankedColumn&) {
    const double tau = tauOf(counts);
    return {tau, tau / std::sqrt((4.0 * n + 10.0) / (9.0 * n * (n - 1.0)))};
}

Kendall textbookKendall(const KendallCounts& counts, double n, const RankedColumn& first,
                        const RankedColumn& second) {
    return {tauOf(counts), textbookZ(counts, n, first, second)};
}

// Below it, sums of quarters are exact, and so the same in any order.
constexpr double exactQuarters = 0x1p51;

double squaredDifference(std::uint32_t doubledRank, std::uint32_t other) {
    const double difference = 0.5 * (static_cast<double>(doubledRank) - static_cast<double>(other));
    return difference * difference;
}

// The sum of the samples in their order, which shows where it is rounded.
double sumSquaredDifferences(const std::uint32_t* first, const std::uint32_t* second, Index samples) {
    constexpr Index lanes = 4; // side by side in the processor
    double sums[lanes] = {};
    Index s = 0;
    for (; s + lanes <= samples; s += lanes) {
        for (Index lane = 0; lane < lanes; ++lane) {
            sums[lane] += squaredDifference(first[s + lane], second[s + lane]);
        }
    }
    double sum = (sums[0] + sums[1]) + (sums[2] + sums[3]);
    for (; s < samples; ++s) sum += squaredDifference(first[s], second[s]);
    if (sum < exactQuarters) return sum;
    sum = 0.0;
    for (s = 0; s < samples; ++s) sum += squaredDifference(first[s], second[s]);
    return sum;
}

// Returns the error flag of IncompleteBeta.
ErrorCode spearmanOfPair(const Numerics& numerics, double d, double n, const RankedColumn& first,
                         const RankedColumn& second, SpearmanTable& table, Index pair) {
    const double e = n * n * n - n;
    const double ties = first.tieSum + second.tieSum;
    const double meanOfD = e / 6.0 - ties / 12.0;
    const double tieFactor = (1.0 - first.tieSum / e) * (1.0 - second.tieSum / e);
    const double zd = (d - meanOfD) / std::sqrt((n - 1.0) * n * n * (n + 1.0) * (n + 1.0) / 36.0 * tieFactor);
    const double rs = (1.0 - 6.0 / e * (d + ties / 12.0)) / std::sqrt(tieFactor);
    table.d[pair] = d;
    table.zd[pair] = zd;
    table.pd[pair] = numerics.normalTwoSidedTail(zd);
    table.rs[pair] = rs;
    return numerics.rankCorrelationTail(rs, n - 2.0, tieFactor, table.pr[pair]);
}

// The pairs of columns in the order of the tables. A front end's workers rank the columns and sum the pairs;
// the few numbers that follow from the sums are made one after the other.
struct ColumnPairs {
    explicit ColumnPairs(const DataMatrix& matrix) : data(matrix) {}

    struct Pair {
        std::int32_t first;
        std::int32_t second;
        PairSums sums;
    };

    const DataMatrix& data;
    RankedColumns ranked;
    Block<Pair> pairs;
    Block<std::uint32_t> scratch; // 3 N items for each worker that sums
    Index ranking = 1;            // workers
    Index summing = 1;

    [[nodiscard]] ErrorCode allocate(Index workers) {
        const Index samples = data.samples, variables = data.variables;
        const Index count = variables * (variables - 1) / 2;
        ranking = usefulWorkers(workers, variables, samples);
        summing = usefulWorkers(workers, count, samples);
        const ErrorCode code =
            ranked.allocate(data, ranking) | pairs.allocate(count) | scratch.allocate(3 * summing * samples);
        if (code != success) return code;
        Index pair = 0;
        for (std::int32_t i = 0; i < data.variables; ++i) {
            for (std::int32_t j = i + 1; j < data.variables; ++j) pairs[pair++] = {i, j, {}};
        }
        return success;
    }

    // The progress stays at 70.
    [[nodiscard]] ErrorCode rank(Screens& screens) {
        return computeParts(
            screens, data.variables, ranking,
            [this](Index column, Index worker) { ranked.rank(data, column, worker); },
            [&screens](Index) { return screens.setProgress(70); });
    }

    // The progress goes to 100, a step for each first column.
    [[nodiscard]] ErrorCode sum(Screens& screens, bool textbook, bool isKendallWanted) {
        const auto sumPair = [&](Index number, Index worker) {
            Pair& pair = pairs[number];
            const RankedColumn& first = ranked.columns[pair.first];
            const RankedColumn& second = ranked.columns[pair.second];
            std::uint32_t* const own = scratch.data() + 3 * worker * data.samples;
            pair.sums.squaredDifferences =
                sumSquaredDifferences(first.doubledRanks, second.doubledRanks, data.samples);
            if (!isKendallWanted) return;
            pair.sums.kendall = textbook ? countSortedPairs(data, first, second, own)
                                         : countPairs(data, pair.first, pair.second, first, second, own);
        };
        const auto tell = [&](Index number) {
            const Pair& pair = pairs[number];
            const int firstDone = pair.first + (pair.second + 1 == data.variables ? 1 : 0);
            return screens.setProgress(70 + 30 * firstDone / (data.variables - 1));
        };
        return computeParts(screens, pairs.size(), summing, sumPair, tell);
    }
};

} // namespace

ErrorCode SpearmanTable::allocate(Index pairs) {
    return d.allocate(pairs) | zd.allocate(pairs) | pd.allocate(pairs) | rs.allocate(pairs) |
           pr.allocate(pairs);
}

ErrorCode KendallTable::allocate(Index pairs) {
    return tau.allocate(pairs) | z.allocate(pairs) | prob.allocate(pairs);
}

ErrorCode RankCorrelations::allocate(Index pairs) {
    return spearman.allocate(pairs) | kendall.allocate(pairs);
}

bool anyProbabilityDeviates(const SpearmanTable& table, Index samples) {
    const double df = static_cast<double>(samples) - 2.0;
    for (Index pair = 0; pair < table.pr.size(); ++pair) {
        double pr = 0.0;
        const double rs = table.rs[pair];
        if (!std::isfinite(rs)) continue; // of a column without different values
        if (textbookNumerics.rankCorrelationTail(rs, df, 1.0, pr) != success) continue;
        if (deviates(table.pr[pair], pr)) return true;
    }
    return false;
}

ErrorCode findRankCorrelations(Screens& screens, const Numerics& numerics, const DataMatrix& data,
                               bool isKendallWanted, RankCorrelations& correlations) {
    const auto kendallOf = numerics.textbook ? textbookKendall : classicKendall;
    KendallTable& kendall = correlations.kendall;
    ColumnPairs columns(data);
    const Index workers = screens.workers();
    correlations.fault = columns.allocate(workers);
    if (correlations.fault != success && workers > 1) correlations.fault = columns.allocate(1);
    if (correlations.fault != success) return success;
    ErrorCode code = columns.rank(screens);
    if (code == success) code = columns.sum(screens, numerics.textbook, isKendallWanted);
    if (code != success) return code;

    const double n = data.samples;
    for (Index k = 0; k < columns.pairs.size(); ++k) {
        const ColumnPairs::Pair& pair = columns.pairs[k];
        const RankedColumn& first = columns.ranked.columns[pair.first];
        const RankedColumn& second = columns.ranked.columns[pair.second];
        if (isKendallWanted) {
            const KendallCounts& counts = pair.sums.kendall;
            const Kendall values = kendallOf(counts, n, first, second);
            kendall.tau[k] = values.tau;
            kendall.z[k] = values.z;
            kendall.prob[k] = numerics.normalTwoSidedTail(values.z);
            kendall.deviates = kendall.deviates || deviates(values.z, textbookZ(counts, n, first, second));
        }
        correlations.fault = spearmanOfPair(numerics, pair.sums.squaredDifferences, n, first, second,
                                            correlations.spearman, k);
        if (correlations.fault != success) return success;
    }
    return success;
}
