#include "analysis/basic/descriptive/fundamental_statistics.h"

#include "analysis/basic/descriptive/basic_statistics.h"
#include "analysis/basic/descriptive/rank_correlation.h"
#include "analysis/run/run_report.h"
#include "numeric/moments.h"
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

// Flags of IncompleteBeta, as the rank correlations pass them on.
constexpr ErrorCode betaOutsideDomain = 1;
constexpr ErrorCode betaNotConvergent = 2;

struct FundamentalWork {
    MomentMatrices moments;
    BasicStatistics basic;
    SpearmanTable spearman;
    KendallTable kendall;
    ErrorCode rankError = success;

    ErrorCode allocate(const DataMatrix& data) {
        const Index variables = data.variables;
        const Index pairs = variables * (variables - 1) / 2;
        return moments.allocate(data.variables) | basic.allocate(variables, data.samples) |
               spearman.allocate(pairs) | kendall.allocate(pairs);
    }
};

void compute(Screens& screens, const DataMatrix& data, FundamentalWork& work) {
    MeanCovarianceCorrelation(data.values.data(), data.samples, data.variables, work.moments);
    basicStatistics(screens, data, work.basic);
    work.rankError = rankCorrelations(screens, data, work.spearman, work.kendall);
}

void writeBasicStatistics(Report& report, const DataSet& data, const BasicStatistics& basic) {
    const struct {
        const char* label;
        const Block<double>& values;
    } rows[BasicStatistics::count] = {
        {"maximum", basic.maximum}, {"minimum", basic.minimum},           {"mean", basic.mean},
        {"median", basic.median},   {"std.dev", basic.standardDeviation}, {"ave.dev", basic.averageDeviation},
        {"skew", basic.skew},       {"kurtosis", basic.kurtosis},         {"variance", basic.variance},
    };
    report.lower.append("\tbasis statistics\n");
    WriteVariableHeader(report, data);
    int number = 0;
    for (const auto& row : rows) {
        WriteValueRow(report, row.values.data(), data.working.variables, 6, row.label, ++number);
    }
    report.lower.append("\n");
}

void writeMatrix(Report& report, const DataSet& data, const char* title, const Block<double>& matrix) {
    SetFormatsFromValues(report, matrix.data(), matrix.size());
    report.lower.append(title);
    WriteLowerTriangle(report, data, matrix.data(), 6);
    report.lower.append("\n");
}

void writeSpearman(Report& report, const DataSet& data, const SpearmanTable& table) {
    report.lower.append("\tspeaman's ranking correlation coefficients\n");
    WritePairTable5(report, data,
                    {{"D", table.d.data()},
                     {"zd", table.zd.data()},
                     {"pd", table.pd.data()},
                     {"rs", table.rs.data()},
                     {"pr", table.pr.data()}});
    report.lower.append("\n");
}

void writeKendall(Report& report, const DataSet& data, const KendallTable& table) {
    report.lower.append("\tkendall's ranking correlation coefficients\n");
    WritePairTable3(report, data,
                    {{"tau", table.tau.data()}, {"z", table.z.data()}, {"prob", table.prob.data()}});
    report.lower.append("\n");
}

void writeReport(Screens& screens, AnalysisRun& run, const FundamentalWork& work) {
    const Settings& settings = run.options.settings;
    const FundamentalOptions& options = settings.fundamental;
    Report& report = run.report;
    report.lower.clear();
    report.lower.append("\nfundamental analysis statistics\n\n");
    report.status.clear();
    report.status.append("status : fundamental analysis statistics");

    SetFormatsFromValues(report, work.basic.variance.data(), work.basic.variance.size(),
                         settings.variableStringLength, settings.sampleStringLength);
    writeBasicStatistics(report, run.data, work.basic);
    if (options.covarianceMatrix != 0) {
        writeMatrix(report, run.data, "\tcovariance matrix\n", work.moments.covariance);
    }
    if (options.correlationMatrix != 0) {
        writeMatrix(report, run.data, "\tcorrelation matrix\n", work.moments.correlation);
    }

    // A bitwise test: an error of another bit than the flags' prints the tables all the same.
    if ((work.rankError & (options.spearmanRanking | options.kendallRanking)) == 0) {
        if (options.spearmanRanking != 0) writeSpearman(report, run.data, work.spearman);
        if (options.kendallRanking != 0) writeKendall(report, run.data, work.kendall);
    } else if (work.rankError == betaOutsideDomain) {
        report.lower.append("\tinvalid freedom for speaman's ranking\n\n");
    } else if (work.rankError == betaNotConvergent) {
        report.lower.append("\ta or b is too large in continuefunc\n\n");
    }
    closeReport(screens, report);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    FundamentalWork work;
    const ErrorCode code = work.allocate(run.data.working);
    if (code != success) return code;

    startProgress(screens, run.report);
    compute(screens, run.data.working, work);
    screens.hideProgress();
    writeReport(screens, run, work);
    return success;
}

} // namespace

const Analysis fundamentalStatistics = {.fields = fields, .driver = run};
