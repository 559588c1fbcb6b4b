#include "analysis/multivariate/factor/factor_analysis.h"

#include <algorithm>
#include <cmath>

#include "analysis/multivariate/factor/factor_report.h"
#include "analysis/multivariate/factor/maximum_likelihood_factor.h"
#include "analysis/run/run_report.h"
#include "analysis/run/score_charts.h"
#include "analysis/run/score_graph.h"
#include "analysis/run/textbook_deviation.h"
#include "data/moments/working_moments.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/moments.h"
#include "numeric/product.h"

namespace {

// The arrows go up to twice the number that the dialog opens with.
double mostFactors(const DataSet& data) {
    return 2.0 * DefaultFactorCount(data.loaded.variables);
}

constexpr const char* rotations[] = {"none", "oblique", "orthogonal"};
constexpr int obliqueControl = 2409;
constexpr int orthogonalControl = 2412;
// Bits of the last two fields among those that a command line gives.
constexpr std::uint32_t obliqueGiven = 1U << 5;
constexpr std::uint32_t orthogonalGiven = 1U << 6;

const OptionField fields[] = {
    {.type = OptionType::wholeNumber,
     .name = "factors",
     .help = "number of factors",
     .offset = offsetof(AnalysisOptions, settings.factor.factorNumber),
     .control = 2401,
     .arrows = 2402,
     .least = 1.0,
     .mostOfData = mostFactors},
    {.type = OptionType::flag,
     .name = "standardize",
     .help = "rotate loadings divided by the roots of the communalities",
     .offset = offsetof(AnalysisOptions, settings.factor.standardize),
     .control = 2403},
    {.type = OptionType::flag,
     .name = "smc",
     .help = "start from squared multiple correlations as communalities",
     .offset = offsetof(AnalysisOptions, settings.factor.useSmc),
     .control = 2404},
    {.type = OptionType::flag,
     .name = "repetition",
     .help = "repeat the extraction of principal factors until the communalities settle",
     .offset = offsetof(AnalysisOptions, settings.factor.repetition),
     .control = 2405},
    {.type = OptionType::choice,
     .name = "rotation",
     .help = "rotation of the factors",
     .offset = offsetof(AnalysisOptions, settings.factor.rotation),
     .control = 2406,
     .choices = rotations},
    {.type = OptionType::choice,
     .name = "criterion",
     .help = "criterion of an oblique rotation",
     .offset = offsetof(AnalysisOptions, settings.factor.obliqueCriterion),
     .control = obliqueControl,
     .choices = obliqueCriteria},
    {.type = OptionType::choice,
     .name = "criterion",
     .help = "criterion of an orthogonal rotation",
     .offset = offsetof(AnalysisOptions, settings.factor.orthogonalCriterion),
     .control = orthogonalControl,
     .choices = orthogonalCriteria},
};

// A settings file may hold any number.
Rotation rotationOf(const FactorOptions& options) {
    if (options.rotation == 1) return Rotation::oblique;
    return options.rotation == 2 ? Rotation::orthogonal : Rotation::none;
}

bool isEnabled(const AnalysisOptions& options, const OptionField& field) {
    const Rotation rotation = rotationOf(options.settings.factor);
    if (field.control == obliqueControl) return rotation == Rotation::oblique;
    if (field.control == orthogonalControl) return rotation == Rotation::orthogonal;
    return true;
}

const char* refuse(const AnalysisOptions& options, std::uint32_t given) {
    switch (rotationOf(options.settings.factor)) {
    case Rotation::none:
        break;
    case Rotation::oblique:
        if ((given & orthogonalGiven) == 0) break;
        return "--criterion of an oblique rotation is covarimin, biquartimin or quartimin";
    case Rotation::orthogonal:
        if ((given & obliqueGiven) == 0) break;
        return "--criterion of an orthogonal rotation is varimax, biquartimax or quartimax";
    }
    return nullptr;
}

unsigned momentNeeds(const AnalysisOptions&) {
    return correlationsDo;
}

bool extractsByLikelihood(const AnalysisRun& run) {
    return run.kind == maximumLikelihoodFactorKind;
}

struct FactorWork {
    MomentMatrices moments;
    Matrix inverse;          // p x p, of the correlations
    Matrix scratch;          // p x p
    Block<double> rowScales; // p
    LikelihoodWork likelihood;
    Matrix standardized; // samples x p
    Matrix coefficients; // p x factors, of the scores
    FactorResult result;

    // A request for more factors than memory has room for ends here, before anything is computed.
    [[nodiscard]] ErrorCode allocate(const DataMatrix& data, int requested, bool likelihoodToo) {
        const Index p = data.variables;
        ErrorCode code = allocateFactors(data, factorRoom(requested));
        if (code != success) return code;
        if (likelihoodToo) code |= likelihood.allocate(p);
        return code | result.model.allocate(p, requested) | moments.allocate(p) | inverse.allocate(p, p) |
               scratch.allocate(p, p) | rowScales.allocate(p) | standardized.allocate(data.rows(), p);
    }

    // What is found with so many factors once they are extracted.
    [[nodiscard]] ErrorCode allocateFactors(const DataMatrix& data, Index factors) {
        const ErrorCode code = result.allocate(data.variables, data.rows(), factors);
        if (code != success) return code;
        return coefficients.allocate(data.variables, factors);
    }
};

ErrorCode findUsableMoments(const Numerics& numerics, const DataMatrix& data, MomentMatrices& moments) {
    const ErrorCode code = findMoments(numerics, data, moments);
    if (code != success) return code;
    if (!allFinite(moments.means) || !allFinite(moments.sds)) return notFinite;
    return numerics.anyConstant(moments) ? illegalData : success;
}

ErrorCode invertCorrelations(FactorWork& work) {
    return invertRegular(work.moments.correlation, work.scratch, work.inverse);
}

// Squared multiple correlations (Guttman 1956).
ErrorCode estimateCommunalities(FactorWork& work) {
    const ErrorCode code = invertCorrelations(work);
    if (code != success) return code;
    Block<double>& communality = work.result.model.communality;
    for (Index j = 0; j < communality.size(); ++j) communality[j] = 1.0 - 1.0 / work.inverse(j, j);
    return success;
}

ErrorCode extractByLikelihood(Screens& screens, const Numerics& numerics, bool estimated, FactorWork& work) {
    const Matrix& correlation = work.moments.correlation;
    FactorModel& model = work.result.model;
    ErrorCode code = startLikelihood(correlation, estimated, model, work.likelihood);
    if (code == success) code = screens.setProgress(30);
    if (code != success) return code;
    return fitLikelihood(numerics, correlation, work.likelihood, model, {&screens, 30, 40});
}

// Multiplies or divides each row by the root of the variable's communality.
void scaleRows(const Block<double>& scales, bool divide, Matrix& matrix) {
    for (Index j = 0; j < matrix.rows(); ++j) {
        double* row = matrix.row(j);
        for (Index k = 0; k < matrix.columns(); ++k) {
            row[k] = divide ? row[k] / scales[j] : row[k] * scales[j];
        }
    }
}

ErrorCode rotateScaled(Screens& screens, const Numerics& numerics, double gamma, FactorWork& work) {
    FactorResult& result = work.result;
    if (result.rotation == Rotation::orthogonal) {
        const ErrorCode turned = rotateOrthogonal(numerics, gamma, result.rotated, {&screens, 40, 60});
        if (turned != success) return turned;
        result.turnLeft = largestTurnLeft(gamma, result.rotated);
        scaleRows(work.rowScales, false, result.rotated);
        return success;
    }
    ErrorCode code = rotateOblique(screens, numerics, gamma, result.rotated, result.oblique);
    if (code != success) return code;
    scaleRows(work.rowScales, false, result.oblique.structure);
    code = numerics.textbook ? findPrimaryFactors(result.oblique) : findPattern(result.oblique);
    if (code != success) return code;
    const Matrix& pattern = result.oblique.pattern;
    std::copy(pattern.begin(), pattern.end(), result.rotated.begin());
    return success;
}

// The factors stay in the order of the extraction. One factor and none come out as they are.
ErrorCode rotate(Screens& screens, const Numerics& numerics, const FactorOptions& options, FactorWork& work) {
    FactorResult& result = work.result;
    const FactorModel& model = result.model;
    result.rotation = rotationOf(options);
    if (result.rotation == Rotation::none) return success;
    for (Index j = 0; j < work.rowScales.size(); ++j) {
        const bool scaled = options.standardize != 0 && model.communality[j] > 0.0;
        work.rowScales[j] = scaled ? std::sqrt(model.communality[j]) : 1.0;
    }
    std::copy(model.loadings.begin(), model.loadings.end(), result.rotated.begin());
    scaleRows(work.rowScales, true, result.rotated);
    const double gamma = (2 - criterionOf(options, result.rotation)) / 2.0;
    const ErrorCode code = rotateScaled(screens, numerics, gamma, work);
    if (code != success) return code;
    for (Index k = 0; k < result.rotated.columns(); ++k) {
        double sum = 0.0;
        for (Index j = 0; j < result.rotated.rows(); ++j) sum += result.rotated(j, k) * result.rotated(j, k);
        result.rotatedSumsOfSquares[k] = sum;
    }
    return success;
}

// What the inverse correlations make score coefficients of: the correlations of variables with factors, which
// oblique factors have in their structure (Thurstone 1947). Classic reports take the pattern instead.
const Matrix& scoredLoadings(const Numerics& numerics, const FactorResult& result) {
    const bool byStructure = numerics.textbook && result.rotation == Rotation::oblique;
    return byStructure ? result.oblique.structure : result.finalLoadings();
}

// Regression scores (Thomson 1939) of the standardized samples.
void findScores(const DataMatrix& data, FactorWork& work) {
    for (Index s = 0; s < work.standardized.rows(); ++s) {
        const double* values = data.row(s);
        double* row = work.standardized.row(s);
        for (Index j = 0; j < work.standardized.columns(); ++j) {
            row[j] = (values[j] - work.moments.means[j]) / work.moments.sds[j];
        }
    }
    multiply(work.standardized, work.coefficients, work.result.scores);
}

ErrorCode compute(Screens& screens, const Numerics& numerics, const DataMatrix& data,
                  const FactorOptions& options, bool byLikelihood, FactorWork& work) {
    FactorModel& model = work.result.model;
    ErrorCode code = findUsableMoments(numerics, data, work.moments);
    if (code == success) code = screens.setProgress(15);
    if (code == success && options.useSmc != 0) code = estimateCommunalities(work);
    if (code == success) code = screens.setProgress(25);
    if (code != success) return code;

    code = byLikelihood ? extractByLikelihood(screens, numerics, options.useSmc != 0, work)
                        : extractPrincipalFactors(screens, numerics, work.moments.correlation,
                                                  options.repetition != 0, model);
    if (code == success) code = work.allocateFactors(data, model.kept());
    if (code == success) code = screens.setProgress(40);
    if (code == success) code = rotate(screens, numerics, options, work);
    if (code == success) code = screens.setProgress(60);
    if (code == success) code = invertCorrelations(work);
    if (code != success) return code;

    multiply(work.inverse, scoredLoadings(numerics, work.result), work.coefficients);
    code = screens.setProgress(80);
    if (code != success) return code;
    findScores(data, work);
    return screens.setProgress(100);
}

bool areAxesOblique(const Matrix& correlations) {
    for (Index k = 0; k < correlations.rows(); ++k) {
        for (Index l = 0; l < k; ++l) {
            if (std::fabs(correlations(k, l)) > shownDeviation) return true;
        }
    }
    return false;
}

void noteDeviations(AnalysisRun& run, const FactorResult& result) {
    if (result.model.settling.remaining() > shownDeviation)
        noteDeviation(run,
                      "communality, loading, score of factors that are not at the end of the repetition");
    if (result.rotation == Rotation::orthogonal && result.turnLeft > shownDeviation)
        noteDeviation(run, "loading, score of the rotation");
    if (result.rotation == Rotation::oblique && areAxesOblique(result.oblique.correlations))
        noteDeviation(run, "loading, structure, correlation, score of the oblique rotation");
}

ErrorCode buildFactorGraph(Screens& screens, AnalysisRun& run, const FactorResult& result) {
    const Matrix& loadings = result.finalLoadings();
    return buildScoreGraph(screens, run,
                           {.seriesPrefix = "factor",
                            .seriesCount = result.scores.columns(),
                            .scores = &result.scores,
                            .vectors = &loadings,
                            .vectorNames = run.data.working.names,
                            .takesPreferences = true});
}

ErrorCode keepScoreExpressions(AnalysisRun& run, const FactorWork& work) {
    return keepExpressions(run.expressions, run.data, [&](ExpressionWriter& writer) {
        writer.addScores("score ", work.moments, 0, work.coefficients);
    });
}

// The share of each factor in the variance of the standardized variables, and the eigenvalues of their
// correlations. Returns success, outOfMemory or eigenNotConvergent.
ErrorCode buildFactorPicture(AnalysisRun& run, const FactorWork& work) {
    if (run.pictureWish.pictures.empty()) return success;
    const FactorResult& result = work.result;
    const bool isRotated = result.rotation != Rotation::none;
    const Block<double>& sums = isRotated ? result.rotatedSumsOfSquares : result.model.sumsOfSquares;
    const Matrix& loadings = result.finalLoadings();
    const Index variables = loadings.rows();
    Block<double> shares, eigenvalues;
    Matrix correlation; // a copy
    ErrorCode code = shares.allocate(result.scores.columns()) | eigenvalues.allocate(variables) |
                     correlation.allocate(variables, variables);
    if (code != success) return code;
    std::copy(work.moments.correlation.begin(), work.moments.correlation.end(), correlation.begin());
    code = symmetricEigenvalues(correlation, eigenvalues);
    if (code != success) return code;
    for (Index k = 0; k < shares.size(); ++k) shares[k] = sums[k] / static_cast<double>(variables);
    return buildPicture<ScoreCharts>(
        run, {.title = extractsByLikelihood(run) ? "maximum likelihood factors" : "principal factors",
              .axisName = "score",
              .scores = &result.scores,
              .count = result.scores.columns(),
              .shares = shares.data(),
              .arrows = &loadings,
              .arrowNames = run.data.working.names,
              .weights = eigenvalues.data(),
              .weightCount = variables,
              .weightName = "eigenvalue of the correlations",
              .weightLevel = 1.0});
}

ErrorCode runFactorAnalysis(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    const FactorOptions& options = run.options.settings.factor;
    const bool byLikelihood = extractsByLikelihood(run);
    FactorWork work;
    ErrorCode code = work.allocate(data, options.factorNumber, byLikelihood);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, *run.numerics, data, options, byLikelihood, work);
    screens.hideProgress();
    if (code != success) return code;

    noteDeviations(run, work.result);
    writeFactorReport(
        run, byLikelihood ? "maximum likelihood analysis statistics" : "principal factor analysis statistics",
        work.result);
    const Matrix& scores = work.result.scores;
    code = keepNumbered(run.columns, "score ", scores, scores.columns());
    if (code == success) code = keepScoreExpressions(run, work);
    if (code == success) code = buildFactorPicture(run, work);
    if (code != success) return code;
    closeReport(screens, run.report);
    return buildFactorGraph(screens, run, work.result);
}

} // namespace

const Analysis factorAnalysis = {.fields = fields,
                                 .driver = runFactorAnalysis,
                                 .isEnabled = isEnabled,
                                 .refuse = refuse,
                                 .momentNeeds = momentNeeds,
                                 .hasExpressions = true,
                                 .pictures = scorePictures};
