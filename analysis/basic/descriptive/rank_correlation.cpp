#include "analysis/basic/descriptive/rank_correlation.h"

#include <cmath>

#include "analysis/basic/descriptive/kendall_counts.h"
#include "analysis/run/textbook_deviation.h"

namespace {

struct Kendall {
    double s;
    double tau;
    double z;
};

// A pair of columns, and scratch of countPairs.
struct ColumnPair {
    const DataMatrix& data;
    Index i;
    Index j;
    const RankedColumn& first;
    const RankedColumn& second;
    std::int32_t* scratch;
};

double tauOf(const KendallCounts& counts) {
    return counts.s / (std::sqrt(counts.first) * std::sqrt(counts.second));
}

double textbookZ(double s, const ColumnPair& of) {
    return s / std::sqrt(kendallVariance(of.data.samples, of.first.ties, of.second.ties));
}

// z has the variance of tau without ties.
Kendall classicKendall(const ColumnPair& of) {
    const double n = of.data.samples;
    const KendallCounts counts = countPairs(of.data, of.i, of.j, of.first, of.second, of.scratch);
    const double tau = tauOf(counts);
    return {counts.s, tau, tau / std::sqrt((4.0 * n + 10.0) / (9.0 * n * (n - 1.0)))};
}

Kendall textbookKendall(const ColumnPair& of) {
    const KendallCounts counts = countSortedPairs(of.data, of.first, of.second, of.scratch);
    return {counts.s, tauOf(counts), textbookZ(counts.s, of)};
}

double squaredDifferences(const double* first, const double* second, Index samples) {
    double sum = 0.0;
    for (Index s = 0; s < samples; ++s) {
        const double difference = first[s] - second[s];
        sum += difference * difference;
    }
    return sum;
}

// Returns the error flag of IncompleteBeta.
ErrorCode spearmanOfPair(const Numerics& numerics, const RankedColumn& first, const RankedColumn& second,
                         std::int32_t samples, SpearmanTable& table, Index pair) {
    const double n = samples;
    const double d = squaredDifferences(first.ranks, second.ranks, samples);
    const double e = n * n * n - n;
    const double ties = first.tieSum + second.tieSum;
    const double meanOfD = e / 6.0 - ties / 12.0;
    const double fac = (1.0 - first.tieSum / e) * (1.0 - second.tieSum / e);
    const double zd = (d - meanOfD) / std::sqrt((n - 1.0) * n * n * (n + 1.0) * (n + 1.0) / 36.0 * fac);
    const double rs = (1.0 - 6.0 / e * (d + ties / 12.0)) / std::sqrt(fac);
    table.d[pair] = d;
    table.zd[pair] = zd;
    table.pd[pair] = numerics.normalTwoSidedTail(zd);
    table.rs[pair] = rs;
    return numerics.rankCorrelationTail(rs, n - 2.0, fac, table.pr[pair]);
}

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
                               RankCorrelations& correlations) {
    const auto kendallOf = numerics.textbook ? textbookKendall : classicKendall;
    KendallTable& kendall = correlations.kendall;
    RankedColumns ranked;
    Block<std::int32_t> scratch;
    correlations.fault = ranked.rank(data) | scratch.allocate(3 * Index{data.samples});
    if (correlations.fault != success) return success;

    const Index variables = data.variables;
    Index pair = 0;
    for (Index i = 0; i + 1 < variables; ++i) {
        const RankedColumn& first = ranked.columns[i];
        for (Index j = i + 1; j < variables; ++j, ++pair) {
            const RankedColumn& second = ranked.columns[j];
            const ColumnPair columns = {data, i, j, first, second, scratch.data()};
            const Kendall values = kendallOf(columns);
            kendall.tau[pair] = values.tau;
            kendall.z[pair] = values.z;
            kendall.prob[pair] = numerics.normalTwoSidedTail(values.z);
            kendall.deviates = kendall.deviates || deviates(values.z, textbookZ(values.s, columns));
            correlations.fault =
                spearmanOfPair(numerics, first, second, data.samples, correlations.spearman, pair);
            if (correlations.fault != success) return success;
        }
        const ErrorCode code = screens.setProgress(70 + static_cast<int>(30 * (i + 1) / (variables - 1)));
        if (code != success) return code;
    }
    return success;
}
