#include "analysis/multivariate/components/principal_components.h"

#include <algorithm>
#include <cmath>

#include "analysis/run/run_report.h"
#include "analysis/run/score_graph.h"
#include "numeric/distributions.h"
#include "numeric/eigen.h"
#include "numeric/moments.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

const char* const baseNames[] = {"correlation", "covariance"};

const OptionField fields[] = {
    {.type = OptionType::wholeNumber,
     .name = "components",
     .help = "keep at most N components",
     .offset = offsetof(AnalysisOptions, settings.factor.factorNumber),
     .control = 2201,
     .arrows = 2203,
     .least = 1.0,
     .mostOfData = variableCount},
    {.type = OptionType::real,
     .name = "min-eigenvalue",
     .help = "keep components whose eigenvalue is above X",
     .offset = offsetof(AnalysisOptions, settings.componentMinimum),
     .control = 2202,
     .arrows = 2204,
     .step = 0.1,
     .least = 0.0,
     .most = 999.9},
    {.type = OptionType::choice,
     .name = "base",
     .help = "the matrix to decompose",
     .offset = offsetof(AnalysisOptions, settings.componentBase),
     .control = 2205,
     .choices = baseNames},
};

// Arrays of p items, and p x p and samples x p matrices, of which the first `kept` columns are filled.
struct ComponentWork {
    MomentMatrices moments;
    Block<double> eigenvalues; // descending
    Block<double> eigenvectors;
    Block<double> ratio;
    Block<double> cumulativeRatio;
    Block<double> chiSquare;
    Block<double> chiProbability;
    Block<double> freedom;
    Block<double> loadings;
    Block<double> scores;
    Block<double> scoreMeans;
    Block<double> scoreDeviations;
    int kept = 0;

    ErrorCode allocate(const DataMatrix& data) {
        const Index p = data.variables;
        return moments.allocate(data.variables) | eigenvalues.allocate(p) | eigenvectors.allocate(p * p) |
               ratio.allocate(p) | cumulativeRatio.allocate(p) | chiSquare.allocate(p) |
               chiProbability.allocate(p) | freedom.allocate(p) | loadings.allocate(p * p) |
               scores.allocate(data.count()) | scoreMeans.allocate(p) | scoreDeviations.allocate(p);
    }
};

bool usesCovariance(const Settings& settings) {
    return settings.componentBase != 0;
}

const Block<double>& baseMatrix(const Settings& settings, const MomentMatrices& moments) {
    return usesCovariance(settings) ? moments.covariance : moments.correlation;
}

// Components above the least eigenvalue, never more than `limit`.
int countKept(const Block<double>& eigenvalues, double least, std::int32_t limit) {
    int kept = 0;
    for (const double eigenvalue : eigenvalues) kept += eigenvalue > 0.0 && eigenvalue > least ? 1 : 0;
    return std::clamp(limit, 0, kept);
}

// Chi-square of the hypothesis that eigenvalue k and all after it are equal (Bartlett 1950; Lawley 1956), for
// each kept k. Lawley's correction has a term for each earlier eigenvalue; here the last one's stands for all
// of them. Reports depend on this value.
void testEqualRemainder(int samples, ComponentWork& work) {
    const int p = static_cast<int>(work.eigenvalues.size());
    double sum = 0.0, logSum = 0.0;
    for (const double eigenvalue : work.eigenvalues) {
        if (!(eigenvalue > 0.0)) continue;
        sum += eigenvalue;
        logSum += std::log(eigenvalue);
    }
    double correction = 0.0;
    for (int k = 0; k < work.kept; ++k) {
        const Index at = k;
        const double q = p - k;
        if (k > 0) {
            const double previous = work.eigenvalues[at - 1];
            sum -= previous;
            logSum -= std::log(previous);
            const double mean = sum / q;
            const double distance = previous - mean;
            correction = k * (mean * mean) / (distance * distance);
        }
        const double factor = samples - 1 - k - (2.0 * q * q + q + 2.0) / (6.0 * q) + correction;
        work.chiSquare[at] = factor * (q * std::log(sum / q) - logSum);
        work.freedom[at] = (q - 1.0) * (q + 2.0) / 2.0;
    }
    ChiSquareUpperProbability(work.kept, work.chiSquare.data(), work.freedom.data(),
                              work.chiProbability.data());
}

void findRatios(const Block<double>& base, ComponentWork& work) {
    const Index p = work.eigenvalues.size();
    double trace = 0.0, cumulative = 0.0;
    for (Index j = 0; j < p; ++j) trace += base[j * p + j];
    for (Index k = 0; k < work.kept; ++k) {
        cumulative += work.eigenvalues[k];
        work.ratio[k] = work.eigenvalues[k] / trace;
        work.cumulativeRatio[k] = cumulative / trace;
    }
}

void findLoadings(ComponentWork& work) {
    const Index p = work.eigenvalues.size();
    for (Index j = 0; j < p; ++j) {
        for (Index k = 0; k < work.kept; ++k) {
            work.loadings[j * p + k] = work.eigenvectors[j * p + k] * std::sqrt(work.eigenvalues[k]);
        }
    }
}

// Scores from the standardized values, for a covariance base too.
void findScores(const DataMatrix& data, ComponentWork& work) {
    const Index p = work.eigenvalues.size();
    const Index kept = work.kept;
    for (Index i = 0; i < data.samples; ++i) {
        const double* x = data.values.data() + i * p;
        double* score = work.scores.data() + i * p;
        for (Index j = 0; j < p; ++j) {
            const double z = (x[j] - work.moments.means[j]) / work.moments.sds[j];
            const double* loading = work.loadings.data() + j * p;
            for (Index k = 0; k < kept; ++k) score[k] += z * loading[k];
        }
        for (Index k = 0; k < kept; ++k) score[k] /= work.eigenvalues[k];
    }
}

// To mean 0 and variance 1, divisor n.
void standardizeScores(int samples, ComponentWork& work) {
    const Index p = work.eigenvalues.size();
    const Index kept = work.kept;
    const Index rows = samples;
    for (Index i = 0; i < rows; ++i) {
        const double* score = work.scores.data() + i * p;
        for (Index k = 0; k < kept; ++k) {
            work.scoreMeans[k] += score[k];
            work.scoreDeviations[k] += score[k] * score[k];
        }
    }
    for (Index k = 0; k < kept; ++k) {
        const double mean = work.scoreMeans[k] / samples;
        work.scoreMeans[k] = mean;
        work.scoreDeviations[k] = std::sqrt(work.scoreDeviations[k] / samples - mean * mean);
    }
    for (Index i = 0; i < rows; ++i) {
        double* score = work.scores.data() + i * p;
        for (Index k = 0; k < kept; ++k) score[k] = (score[k] - work.scoreMeans[k]) / work.scoreDeviations[k];
    }
}

ErrorCode compute(Screens& screens, const DataMatrix& data, const Settings& settings, ComponentWork& work) {
    const int p = data.variables;
    MomentMatrices& moments = work.moments;
    MeanCovarianceCorrelation(data.values.data(), data.samples, p, moments);
    if (!allFinite(moments.means.data(), moments.means.size()) ||
        !allFinite(moments.sds.data(), moments.sds.size())) {
        return notFinite;
    }
    if (anyDeviationBelow(moments.sds.data(), p, leastDeviation)) return illegalData;
    const Block<double>& base = baseMatrix(settings, moments);
    screens.setProgress(20);

    const ErrorCode code =
        SymmetricEigen(p, p, work.eigenvectors.data(), work.eigenvalues.data(), base.data());
    if (code != success) return code;
    screens.setProgress(40);

    work.kept = countKept(work.eigenvalues, settings.componentMinimum, settings.factor.factorNumber);
    testEqualRemainder(data.samples, work);
    screens.setProgress(60);
    findRatios(base, work);
    findLoadings(work);
    screens.setProgress(80);
    findScores(data, work);
    standardizeScores(data.samples, work);
    screens.setProgress(100);
    return success;
}

void writeStatistics(Report& report, const ComponentWork& work) {
    const struct {
        const char* label;
        const Block<double>& values;
        int slot;
    } rows[] = {
        {"eigen value", work.eigenvalues, 6}, {"ratio", work.ratio, 6},
        {"c.ratio", work.cumulativeRatio, 6}, {"chi square", work.chiSquare, 6},
        {"chi prob", work.chiProbability, 6}, {"freedom", work.freedom, 0},
    };
    report.lower.append("\teigen value, ratio contributed, cumulative ratio, chi square, chi probability, "
                        "degree of freedom\n");
    WriteFactorHeader(report, work.kept, report.formats.nameLength);
    int number = 0;
    for (const auto& row : rows) {
        SetFormatsFromValues(report, row.values.data(), work.kept);
        WriteValueRow(report, row.values.data(), work.kept, row.slot, row.label, ++number);
    }
    report.lower.append("\n");
}

void writeMatrix(Report& report, const char* title, const Block<double>& matrix, int stride, int kept,
                 const RowLabels& labels, int rows) {
    SetFormatsFromValues(report, matrix.data(), matrix.size());
    report.lower.append(title);
    WriteFactorTable(report, rows, kept, matrix.data(), stride, labels);
    report.lower.append("\n");
}

void writeReport(Screens& screens, AnalysisRun& run, const ComponentWork& work) {
    const Settings& settings = run.options.settings;
    const DataMatrix& data = run.data.working;
    const char* base = baseNames[usesCovariance(settings) ? 1 : 0];
    Report& report = run.report;
    report.lower.clear();
    report.lower.appendFormat("\nprincipal component analysis statistics\n-- based %s matrix\n\n", base);
    report.status.clear();
    report.status.appendFormat("status : principal conponent analysis statistics-- based %s matrix", base);

    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
    writeStatistics(report, work);
    const int p = data.variables;
    writeMatrix(report, "\teigen vector matrix\n", work.eigenvectors, p, work.kept, data.names, p);
    writeMatrix(report, "\tprincipal component load\n", work.loadings, p, work.kept, data.names, p);
    writeMatrix(report, "\tprincipal component score\n", work.scores, p, work.kept, data.labels,
                data.samples);
    closeReport(screens, report);
}

ErrorCode buildComponentGraph(Screens& screens, AnalysisRun& run, const ComponentWork& work) {
    const DataMatrix& data = run.data.working;
    return buildScoreGraph(screens, run,
                           {.seriesPrefix = "factor",
                            .seriesCount = work.kept,
                            .scores = work.scores.data(),
                            .scoreStride = data.variables,
                            .vectorNames = &data.names,
                            .vectorCount = data.variables,
                            .vectors = work.loadings.data(),
                            .vectorStride = data.variables,
                            .takesPreferences = true});
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    ComponentWork work;
    ErrorCode code = work.allocate(run.data.working);
    if (code != success) return code;

    startProgress(screens, run.report);
    code = compute(screens, run.data.working, run.options.settings, work);
    screens.hideProgress();
    if (code != success) return code;
    writeReport(screens, run, work);
    return buildComponentGraph(screens, run, work);
}

} // namespace

const Analysis principalComponents = {.fields = fields, .driver = run};
