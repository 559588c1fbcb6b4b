#include "analysis/basic/descriptive/fundamental_statistics.h"

#include <algorithm>
#include <cmath>

#include "analysis/basic/descriptive/basic_statistics.h"
#include "analysis/basic/descriptive/rank_correlation.h"
#include "analysis/run/build_picture.h"
#include "analysis/run/run_report.h"
#include "data/moments/working_moments.h"
#include "numeric/unbiased_covariance.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

const OptionField fields[] = {
    {.type = OptionType::flag,
     .name = "covariance",
     .help = "print the covariance matrix",
     .offset = offsetof(AnalysisOptions, settings.fundamental.covarianceMatrix),
     .control = 2001},
    {.type = OptionType::flag,
     .name = "correlation",
     .help = "print the correlation matrix",
     .offset = offsetof(AnalysisOptions, settings.fundamental.correlationMatrix),
     .control = 2002},
    {.type = OptionType::flag,
     .name = "spearman",
     .help = "print Spearman's rank correlations",
     .offset = offsetof(AnalysisOptions, settings.fundamental.spearmanRanking),
     .control = 2003},
    {.type = OptionType::flag,
     .name = "kendall",
     .help = "print Kendall's rank correlations",
     .offset = offsetof(AnalysisOptions, settings.fundamental.kendallRanking),
     .control = 2004},
};

unsigned momentNeeds(const AnalysisOptions&) {
    return needsCount | needsMeans | needsDeviations;
}

// Everything that the engine fills and the report shows.
struct FundamentalWork {
    MomentMatrices moments;
    BasicStatistics basic;
    RankCorrelations ranks;

    [[nodiscard]] ErrorCode allocate(const DataMatrix& data, Index workers) {
        const Index variables = data.variables;
        return moments.allocate(variables) |
               basic.allocate(variables, data.rows(), usefulWorkers(workers, variables, data.rows())) |
               ranks.allocate(variables * (variables - 1) / 2);
    }
};

// The statistics that moments tell.
void takeBasicStatistics(const DataMatrix& data, const MomentMatrices& moments, BasicStatistics& basic) {
    for (Index j = 0; j < data.variables; ++j) {
        basic.mean[j] = moments.means[j];
        basic.variance[j] = moments.covariance(j, j) * unbiasedScale(data.samples);
        basic.standardDeviation[j] = std::sqrt(basic.variance[j]);
    }
}

// What the report does not show is not computed.
ErrorCode compute(Screens& screens, const AnalysisRun& run, FundamentalWork& work) {
    const FundamentalOptions& options = run.options.settings.fundamental;
    const Numerics& numerics = *run.numerics;
    const DataMatrix& data = run.data.working;
    ErrorCode code = success;
    if (data.moments != nullptr || options.covarianceMatrix != 0 || options.correlationMatrix != 0) {
        code = findMoments(numerics, data, work.moments);
        if (data.moments != nullptr) takeBasicStatistics(data, work.moments, work.basic);
        if (numerics.textbook) takeUnbiased(data.samples, work.moments.covariance);
    }
    if (data.moments != nullptr) return code;
    if (code == success) code = findBasicStatistics(screens, numerics, data, work.basic);
    if (code != success || (options.spearmanRanking == 0 && options.kendallRanking == 0)) return code;
    return findRankCorrelations(screens, numerics, data, options.kendallRanking != 0, work.ranks);
}

// Where ties, small samples or the rounding of a mean make them differ.
void noteDeviations(AnalysisRun& run, FundamentalWork& work) {
    if (run.numerics->textbook) return;
    const FundamentalOptions& options = run.options.settings.fundamental;
    const DataMatrix& data = run.data.working;
    if (skewDeviates(work.basic)) noteDeviation(run, "skew, kurtosis");
    if (options.covarianceMatrix != 0) noteDeviation(run, "covariance matrix");
    if (work.ranks.fault != success || data.moments != nullptr) return;
    if (options.spearmanRanking != 0 && anyProbabilityDeviates(work.ranks.spearman, data.samples)) {
        noteDeviation(run, "pr of spearman");
    }
    if (options.kendallRanking != 0 && work.ranks.kendall.deviates) noteDeviation(run, "z, prob of kendall");
}

// The spelling of captions is kept so that reports stay comparable and spreadsheets find them.
void writeBasicStatistics(Report& report, const DataSet& data, const BasicStatistics& basic) {
    const struct {
        const char* label;
        const Block<double>& values;
        bool isOfMoments = false;
    } rows[] = {
        {"maximum", basic.maximum},
        {"minimum", basic.minimum},
        {"mean", basic.mean, true},
        {"median", basic.median},
        {"std.dev", basic.standardDeviation, true},
        {"ave.dev", basic.averageDeviation},
        {"skew", basic.skew},
        {"kurtosis", basic.kurtosis},
        {"variance", basic.variance, true},
    };
    // The variances fix the widths of all nine rows.
    SetFormatsFromValues(report, basic.variance);
    writeCaption(report, "basis statistics");
    WriteVariableHeader(report, data);
    Index number = 0;
    for (const auto& row : rows) {
        ++number;
        if (data.working.moments != nullptr && !row.isOfMoments) continue;
        WriteValueRow(report, row.values.data(), row.values.size(), 6, row.label, number);
    }
    endTable(report);
}

void writeMatrix(Report& report, const DataSet& data, const char* caption, const Matrix& matrix) {
    SetFormatsFromValues(report, matrix);
    writeCaption(report, caption);
    WriteLowerTriangle(report, data, matrix.data(), 6);
    endTable(report);
}

void writeSpearman(Report& report, const DataSet& data, const SpearmanTable& table) {
    writeCaption(report, "speaman's ranking correlation coefficients");
    WritePairTable5(report, data,
                    {{"D", table.d.data()},
                     {"zd", table.zd.data()},
                     {"pd", table.pd.data()},
                     {"rs", table.rs.data()},
                     {"pr", table.pr.data()}});
    endTable(report);
}

void writeKendall(Report& report, const DataSet& data, const KendallTable& table) {
    writeCaption(report, "kendall's ranking correlation coefficients");
    WritePairTable3(report, data,
                    {{"tau", table.tau.data()}, {"z", table.z.data()}, {"prob", table.prob.data()}});
    endTable(report);
}

void writeRankFault(Report& report, const char* caption) {
    writeCaption(report, caption);
    endTable(report);
}

void writeRankCorrelations(Report& report, const DataSet& data, const RankCorrelations& ranks,
                           const FundamentalOptions& options) {
    // Bit by bit: a lack of memory shares no bit with the flags, and the tables show zeros.
    if ((ranks.fault & (options.spearmanRanking | options.kendallRanking)) == 0) {
        if (options.spearmanRanking != 0) writeSpearman(report, data, ranks.spearman);
        if (options.kendallRanking != 0) writeKendall(report, data, ranks.kendall);
    } else if (ranks.fault == betaOutsideDomain) {
        writeRankFault(report, "invalid freedom for speaman's ranking");
    } else if (ranks.fault == betaNotConvergent) {
        writeRankFault(report, "a or b is too large in continuefunc");
    }
}

void writeReport(AnalysisRun& run, const FundamentalWork& work) {
    const FundamentalOptions& options = run.options.settings.fundamental;
    Report& report = run.report;
    openReport(run, {.title = "fundamental analysis statistics"});
    writeBasicStatistics(report, run.data, work.basic);
    if (options.covarianceMatrix != 0) {
        writeMatrix(report, run.data, "covariance matrix", work.moments.covariance);
    }
    if (options.correlationMatrix != 0) {
        writeMatrix(report, run.data, "correlation matrix", work.moments.correlation);
    }
    if (run.data.working.moments == nullptr) writeRankCorrelations(report, run.data, work.ranks, options);
}

constexpr Index mostPanels = 12; // beside each other

ErrorCode describeScatters(const AnalysisRun&, const DataMatrix& data, Chart& chart) {
    if (data.variables > mostPanels) {
        chart.refusal = "a matrix of scatters has room for 12 variables; --exclude some";
        return success;
    }
    chart.kind = ChartKind::scatterMatrix;
    chart.title.set("pairs of variables");
    const ErrorCode code = chart.names.copy(data.names) | chart.values.allocate(data.samples, data.variables);
    if (code == success) std::copy_n(data.values.begin(), data.count(), chart.values.begin());
    return code;
}

constexpr Picture pictures[] = {
    {"scatters", "a scatter of each pair of variables", Picture::groups,
     describeResult<DataMatrix, describeScatters>},
};

// Each step answers with a code; the first one that is not success ends the run, and the run flow tells it
// to the user.
ErrorCode runFundamentalStatistics(Screens& screens, AnalysisRun& run) {
    FundamentalWork work;
    const Index workers = screens.workers();
    ErrorCode code = work.allocate(run.data.working, workers);
    // One needs the least memory.
    if (code != success && workers > 1) code = work.allocate(run.data.working, 1);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, run, work);
    screens.hideProgress();
    if (code != success) return code;

    noteDeviations(run, work);
    writeReport(run, work);
    code = buildPicture(run, run.data.working);
    if (code != success) return code;
    closeReport(screens, run.report);
    return success;
}

} // namespace

const Analysis fundamentalStatistics = {
    .fields = fields, .driver = runFundamentalStatistics, .momentNeeds = momentNeeds, .pictures = pictures};
