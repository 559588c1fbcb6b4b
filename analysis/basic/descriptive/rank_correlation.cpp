#include "analysis/basic/descriptive/rank_correlation.h"

#include <cmath>
#include <numbers>

#include "analysis/basic/descriptive/kendall_counts.h"
#include "numeric/beta.h"
#include "numeric/distributions.h"

namespace {

double twoSidedNormal(double z) {
    return ComplementaryErrorFunction(std::fabs(z) / std::numbers::sqrt2);
}

void kendallOfPair(const KendallCounts& counts, double n, KendallTable& table, Index pair) {
    const double tau = counts.s / (std::sqrt(counts.first) * std::sqrt(counts.second));
    const double z = tau / std::sqrt((4.0 * n + 10.0) / (9.0 * n * (n - 1.0)));
    table.tau[pair] = tau;
    table.z[pair] = z;
    table.prob[pair] = twoSidedNormal(z);
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
ErrorCode spearmanOfPair(const RankedColumn& first, const RankedColumn& second, std::int32_t samples,
                         SpearmanTable& table, Index pair) {
    const double n = samples;
    const double d = squaredDifferences(first.ranks, second.ranks, samples);
    const double e = n * n * n - n;
    const double ties = first.tieSum + second.tieSum;
    const double meanOfD = e / 6.0 - ties / 12.0;
    const double fac = (1.0 - first.tieSum / e) * (1.0 - second.tieSum / e);
    const double zd = (d - meanOfD) / std::sqrt((n - 1.0) * n * n * (n + 1.0) * (n + 1.0) / 36.0 * fac);
    const double rs = (1.0 - 6.0 / e * (d + ties / 12.0)) / std::sqrt(fac);
    std::uint32_t flag = 0;
    double pr = 0.0;
    if (fac > 0.0) {
        // Divided by the tie factor, not by (1 + rs)(1 - rs): kept so that reports stay comparable.
        const double df = n - 2.0;
        const double t2 = rs * rs * df / fac;
        pr = IncompleteBeta(0.5 * df, 0.5, df / (df + t2), flag);
    }
    table.d[pair] = d;
    table.zd[pair] = zd;
    table.pd[pair] = twoSidedNormal(zd);
    table.rs[pair] = rs;
    table.pr[pair] = pr;
    return static_cast<ErrorCode>(flag);
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

ErrorCode findRankCorrelations(Screens& screens, const DataMatrix& data, RankCorrelations& correlations) {
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
            const KendallCounts counts = countPairs(data, i, j, first, second, scratch.data());
            kendallOfPair(counts, data.samples, correlations.kendall, pair);
            correlations.fault = spearmanOfPair(first, second, data.samples, correlations.spearman, pair);
            if (correlations.fault != success) return success;
        }
        const ErrorCode code = screens.setProgress(70 + static_cast<int>(30 * (i + 1) / (variables - 1)));
        if (code != success) return code;
    }
    return success;
}
