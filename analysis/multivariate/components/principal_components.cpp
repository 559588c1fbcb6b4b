#include "analysis/multivariate/components/principal_components.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "analysis/run/run_report.h"
#include "analysis/run/score_charts.h"
#include "analysis/run/score_graph.h"
#include "analysis/run/textbook_deviation.h"
#include "data/moments/working_moments.h"
#include "numeric/eigen.h"
#include "numeric/moments.h"
#include "numeric/unbiased_covariance.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

constexpr const char* baseNames[] = {"correlation", "covariance"};

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

bool usesCovariance(const Settings& settings) {
    return settings.componentBase != 0;
}

unsigned momentNeeds(const AnalysisOptions& options) {
    return needsCount | (usesCovariance(options.settings) ? needsDeviations : correlationsDo);
}

// Arrays of p items and matrices of p columns; behind the eigenvalues and eigenvectors, the first `kept`
// items and columns are filled.
struct ComponentWork {
    MomentMatrices moments;
    Block<double> eigenvalues; // descending
    Matrix eigenvectors;       // p x p
    Block<double> ratio;       // of an eigenvalue to the trace
    Block<double> cumulativeRatio;
    Block<double> chiSquare;
    Block<double> chiProbability;
    Block<double> freedom;
    Matrix loadings; // p x p
    Matrix scores;   // rows x kept
    Block<double> scoreMeans;
    Block<double> scoreDeviations;
    Index kept = 0;

    [[nodiscard]] ErrorCode allocate(const DataMatrix& data) {
        const Index p = data.variables;
        return moments.allocate(p) | eigenvalues.allocate(p) | eigenvectors.allocate(p, p) |
               ratio.allocate(p) | cumulativeRatio.allocate(p) | chiSquare.allocate(p) |
               chiProbability.allocate(p) | freedom.allocate(p) | loadings.allocate(p, p) |
               scoreMeans.allocate(p) | scoreDeviations.allocate(p);
    }
};

const Matrix& baseMatrix(const Settings& settings, const MomentMatrices& moments) {
    return usesCovariance(settings) ? moments.covariance : moments.correlation;
}

// Components above the least eigenvalue, never more than `limit`.
Index countKept(const Block<double>& eigenvalues, double least, Index limit) {
    const Index above = std::count_if(eigenvalues.begin(), eigenvalues.end(), [least](double eigenvalue) {
        return eigenvalue > 0.0 && eigenvalue > least;
    });
    return std::clamp<Index>(limit, 0, above);
}

// The factor of the log ratio of means of the last q eigenvalues.
double bartlettFactor(double samples, double earlier, double q, double correction) {
    return samples - 1.0 - earlier - (2.0 * q * q + q + 2.0) / (6.0 * q) + correction;
}

// Chi-squares of the hypotheses that eigenvalue k and all after it are equal (Bartlett 1950; Lawley 1956),
// for each kept k. Lawley's correction has a term for each earlier eigenvalue; here the last one's stands for
// all of them, which is kept so that reports stay comparable.
void findClassicChiSquares(double samples, ComponentWork& work) {
    double sum = 0.0, logSum = 0.0;
    for (const double eigenvalue : work.eigenvalues) {
        if (!(eigenvalue > 0.0)) continue;
        sum += eigenvalue;
        logSum += std::log(eigenvalue);
    }
    double correction = 0.0;
    for (Index k = 0; k < work.kept; ++k) {
        const double earlier = static_cast<double>(k);
        const double q = static_cast<double>(work.eigenvalues.size() - k);
        if (k > 0) {
            const double previous = work.eigenvalues[k - 1];
            sum -= previous;
            logSum -= std::log(previous);
            const double mean = sum / q;
            const double distance = previous - mean;
            correction = earlier * (mean * mean) / (distance * distance);
        }
        const double factor = bartlettFactor(samples, earlier, q, correction);
        work.chiSquare[k] = factor * (q * std::log(sum / q) - logSum);
    }
}

// The chi-square of one k with a term of each earlier eigenvalue. Sums begin behind them, so that nothing of
// small eigenvalues is lost.
double textbookChiSquare(double samples, const Block<double>& eigenvalues, Index k) {
    const double q = static_cast<double>(eigenvalues.size() - k);
    double sum = 0.0, logSum = 0.0;
    for (Index i = k; i < eigenvalues.size(); ++i) {
        if (!(eigenvalues[i] > 0.0)) continue;
        sum += eigenvalues[i];
        logSum += std::log(eigenvalues[i]);
    }
    const double mean = sum / q;
    double correction = 0.0;
    for (Index i = 0; i < k; ++i) {
        const double share = mean / (eigenvalues[i] - mean);
        correction += share * share;
    }
    const double factor = bartlettFactor(samples, static_cast<double>(k), q, correction);
    return factor * (q * std::log(mean) - logSum);
}

void findTextbookChiSquares(double samples, ComponentWork& work) {
    for (Index k = 0; k < work.kept; ++k) work.chiSquare[k] = textbookChiSquare(samples, work.eigenvalues, k);
}

void testEqualRemainder(const Numerics& numerics, double samples, ComponentWork& work) {
    const auto findChiSquares = numerics.textbook ? findTextbookChiSquares : findClassicChiSquares;
    findChiSquares(samples, work);
    for (Index k = 0; k < work.kept; ++k) {
        const double q = static_cast<double>(work.eigenvalues.size() - k);
        work.freedom[k] = (q - 1.0) * (q + 2.0) / 2.0;
    }
    numerics.chiSquareTails(work.kept, work.chiSquare.data(), work.freedom.data(),
                            work.chiProbability.data());
}

void findRatios(const Matrix& base, ComponentWork& work) {
    double trace = 0.0, cumulative = 0.0;
    for (Index j = 0; j < base.rows(); ++j) trace += base(j, j);
    for (Index k = 0; k < work.kept; ++k) {
        cumulative += work.eigenvalues[k];
        work.ratio[k] = work.eigenvalues[k] / trace;
        work.cumulativeRatio[k] = cumulative / trace;
    }
}

void findLoadings(ComponentWork& work) {
    for (Index j = 0; j < work.loadings.rows(); ++j) {
        for (Index k = 0; k < work.kept; ++k) {
            work.loadings(j, k) = work.eigenvectors(j, k) * std::sqrt(work.eigenvalues[k]);
        }
    }
}

// Scores from the standardized values, for a covariance base too.
void findScores(const DataMatrix& data, ComponentWork& work) {
    const Index p = data.variables;
    const Index kept = work.kept;
    for (Index s = 0; s < data.rows(); ++s) {
        const double* x = data.row(s);
        double* score = work.scores.row(s);
        for (Index j = 0; j < p; ++j) {
            const double z = (x[j] - work.moments.means[j]) / work.moments.sds[j];
            const double* loading = work.loadings.row(j);
            for (Index k = 0; k < kept; ++k) score[k] += z * loading[k];
        }
        for (Index k = 0; k < kept; ++k) score[k] /= work.eigenvalues[k];
    }
}

// Those of the covariance base: deviations times eigenvectors.
void findCovarianceScores(const DataMatrix& data, ComponentWork& work) {
    for (Index s = 0; s < data.rows(); ++s) {
        const double* x = data.row(s);
        double* score = work.scores.row(s);
        for (Index j = 0; j < data.variables; ++j) {
            const double deviation = x[j] - work.moments.means[j];
            const double* weight = work.eigenvectors.row(j);
            for (Index k = 0; k < work.kept; ++k) score[k] += deviation * weight[k];
        }
    }
}

// To mean 0 and variance 1, divisor N.
void standardizeScores(ComponentWork& work) {
    const Index samples = work.scores.rows();
    const Index kept = work.kept;
    const double n = static_cast<double>(samples);
    for (Index s = 0; s < samples; ++s) {
        const double* score = work.scores.row(s);
        for (Index k = 0; k < kept; ++k) {
            work.scoreMeans[k] += score[k];
            work.scoreDeviations[k] += score[k] * score[k];
        }
    }
    for (Index k = 0; k < kept; ++k) {
        const double mean = work.scoreMeans[k] / n;
        work.scoreMeans[k] = mean;
        work.scoreDeviations[k] = std::sqrt(work.scoreDeviations[k] / n - mean * mean);
    }
    for (Index s = 0; s < samples; ++s) {
        double* score = work.scores.row(s);
        for (Index k = 0; k < kept; ++k) score[k] = (score[k] - work.scoreMeans[k]) / work.scoreDeviations[k];
    }
}

ErrorCode compute(Screens& screens, const Numerics& numerics, const DataMatrix& data,
                  const Settings& settings, ComponentWork& work) {
    const MomentMatrices& moments = work.moments;
    ErrorCode code = findMoments(numerics, data, work.moments);
    if (code != success) return code;
    if (!allFinite(moments.means) || !allFinite(moments.sds)) return notFinite;
    if (numerics.anyConstant(moments)) return illegalData;
    code = screens.setProgress(20);
    if (code != success) return code;

    const Matrix& base = baseMatrix(settings, moments);
    code = SymmetricEigen(work.eigenvectors, work.eigenvalues, base);
    if (code == success) code = screens.setProgress(40);
    if (code != success) return code;

    const bool isUnbiased = numerics.textbook && usesCovariance(settings);
    const double printedScale = isUnbiased ? unbiasedScale(data.samples) : 1.0;
    work.kept =
        countKept(work.eigenvalues, settings.componentMinimum / printedScale, settings.factor.factorNumber);
    testEqualRemainder(numerics, data.samples, work);
    code = screens.setProgress(60);
    if (code != success) return code;

    findRatios(base, work);
    findLoadings(work);
    code = screens.setProgress(80);
    if (code != success) return code;

    if (work.scores.allocate(data.rows(), work.kept) != success) return outOfMemory;
    (isUnbiased ? findCovarianceScores : findScores)(data, work);
    standardizeScores(work);
    // Eigenvalues are printed as variances with the divisor N - 1; loadings stay those of the matrix itself.
    for (double& eigenvalue : work.eigenvalues) eigenvalue *= printedScale;
    return screens.setProgress(100);
}

void noteDeviations(AnalysisRun& run, const ComponentWork& work) {
    if (run.numerics->textbook) return;
    bool deviatesChi = false, deviatesProbability = false;
    for (Index k = 0; k < work.kept; ++k) {
        const double chiSquare = textbookChiSquare(run.data.working.samples, work.eigenvalues, k);
        double tail = 1.0;
        textbookNumerics.chiSquareTails(1, &chiSquare, &work.freedom[k], &tail);
        deviatesChi = deviatesChi || deviates(work.chiSquare[k], chiSquare);
        deviatesProbability = deviatesProbability || deviates(work.chiProbability[k], tail);
    }
    if (usesCovariance(run.options.settings)) noteDeviation(run, "eigen value, score");
    if (deviatesChi) noteDeviation(run, "chi square");
    if (deviatesProbability) noteDeviation(run, "chi prob");
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
    writeCaption(report, "eigen value, ratio contributed, cumulative ratio, chi square, chi probability, "
                         "degree of freedom");
    WriteFactorHeader(report, work.kept, report.formats.nameLength);
    Index number = 0;
    for (const auto& row : rows) {
        SetFormatsFromValues(report, row.values.data(), work.kept);
        WriteValueRow(report, row.values.data(), work.kept, row.slot, row.label, ++number);
    }
    endTable(report);
}

void writeMatrix(Report& report, const char* caption, const Matrix& matrix, Index kept,
                 const RowLabels& labels) {
    SetFormatsFromValues(report, matrix);
    writeCaption(report, caption);
    WriteFactorTable(report, matrix, kept, labels);
    endTable(report);
}

void writeReport(AnalysisRun& run, const ComponentWork& work) {
    const DataMatrix& data = run.data.working;
    Report& report = run.report;
    char option[64], status[128];
    std::snprintf(option, sizeof option, "-- based %s matrix",
                  baseNames[usesCovariance(run.options.settings) ? 1 : 0]);
    // Spelling and spacing are kept so that reports stay comparable.
    std::snprintf(status, sizeof status, "principal conponent analysis statistics%s", option);
    openReport(run, {.title = "principal component analysis statistics", .option = option, .status = status});
    writeStatistics(report, work);
    writeMatrix(report, "eigen vector matrix", work.eigenvectors, work.kept, data.names);
    writeMatrix(report, "principal component load", work.loadings, work.kept, data.names);
    if (data.moments == nullptr)
        writeMatrix(report, "principal component score", work.scores, work.kept, data.labels);
}

ErrorCode buildComponentGraph(Screens& screens, AnalysisRun& run, const ComponentWork& work) {
    return buildScoreGraph(screens, run,
                           {.seriesPrefix = "factor",
                            .seriesCount = work.kept,
                            .scores = &work.scores,
                            .vectors = &work.loadings,
                            .vectorNames = run.data.working.names,
                            .takesPreferences = true});
}

// The standard deviation of a sum of standardized variables by the weights of a column.
double deviationOfSum(const Matrix& correlation, const Matrix& weights, Index k) {
    double variance = 0.0;
    for (Index i = 0; i < weights.rows(); ++i) {
        double sum = 0.0;
        for (Index j = 0; j < weights.rows(); ++j) sum += correlation(i, j) * weights(j, k);
        variance += sum * weights(i, k);
    }
    return std::sqrt(variance);
}

// The weights of standardized variables in standardized scores, the raw ones having the mean 0.
ErrorCode keepScoreExpressions(AnalysisRun& run, const ComponentWork& work) {
    if (!run.expressions.areWanted) return success;
    const bool isUnbiased = run.numerics->textbook && usesCovariance(run.options.settings);
    Matrix weights;
    const ErrorCode code = weights.allocate(work.loadings.rows(), work.kept);
    if (code != success) return code;
    for (Index k = 0; k < work.kept; ++k) {
        for (Index j = 0; j < weights.rows(); ++j) {
            weights(j, k) = isUnbiased ? work.eigenvectors(j, k) * work.moments.sds[j] : work.loadings(j, k);
        }
        const double deviation = deviationOfSum(work.moments.correlation, weights, k);
        for (Index j = 0; j < weights.rows(); ++j) weights(j, k) /= deviation;
    }
    return keepExpressions(run.expressions, run.data, [&](ExpressionWriter& writer) {
        writer.addScores("score ", work.moments, 0, weights);
    });
}

ErrorCode buildComponentPicture(AnalysisRun& run, const ComponentWork& work) {
    return buildPicture<ScoreCharts>(run, {.title = "principal components",
                                           .axisName = "score",
                                           .scores = &work.scores,
                                           .count = work.kept,
                                           .shares = work.ratio.data(),
                                           .arrows = &work.loadings,
                                           .arrowNames = run.data.working.names,
                                           .weights = work.eigenvalues.data(),
                                           .weightCount = work.eigenvalues.size(),
                                           .weightName = "eigenvalue",
                                           .weightLevel = usesCovariance(run.options.settings) ? 0.0 : 1.0});
}

ErrorCode runPrincipalComponents(Screens& screens, AnalysisRun& run) {
    const Settings& settings = run.options.settings;
    ComponentWork work;
    ErrorCode code = work.allocate(run.data.working);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, *run.numerics, run.data.working, settings, work);
    screens.hideProgress();
    if (code != success) return code;

    noteDeviations(run, work);
    writeReport(run, work);
    code = keepNumbered(run.columns, "score ", work.scores, work.kept);
    if (code == success) code = keepScoreExpressions(run, work);
    if (code == success) code = buildComponentPicture(run, work);
    if (code != success) return code;
    closeReport(screens, run.report);
    return buildComponentGraph(screens, run, work);
}

} // namespace

const Analysis principalComponents = {.fields = fields,
                                      .driver = runPrincipalComponents,
                                      .momentNeeds = momentNeeds,
                                      .hasExpressions = true,
                                      .pictures = scorePictures};
