#include "analysis/multivariate/factor/factor_analysis.h"

#include <algorithm>
#include <cmath>

#include "analysis/multivariate/factor/factor_report.h"
#include "analysis/multivariate/factor/maximum_likelihood_factor.h"
#include "analysis/run/score_graph.h"
#include "numeric/lu.h"
#include "numeric/moments.h"
#include "numeric/product.h"

namespace {

constexpr std::int32_t maximumLikelihoodKind = 5;

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

struct FactorWork {
    MomentMatrices moments;
    Block<double> inverse;      // p x p, of the correlations
    Block<double> scratch;      // p x p
    Block<double> rowScales;    // p
    Block<double> standardized; // p: one sample
    LikelihoodWork likelihood;
    Block<double> coefficients; // p x kept, of the scores
    FactorResult result;

    ErrorCode allocate(const DataMatrix& data, int requested, bool likelihoodToo) {
        const Index p = data.variables;
        ErrorCode code = result.allocate(data.variables, data.samples, requested);
        if (code != success) return code;
        if (likelihoodToo) code |= likelihood.allocate(data.variables);
        return code | moments.allocate(data.variables) | inverse.allocate(p * p) | scratch.allocate(p * p) |
               rowScales.allocate(p) | standardized.allocate(p) |
               coefficients.allocate(p * factorRoom(requested));
    }
};

ErrorCode findMoments(const DataMatrix& data, MomentMatrices& moments) {
    MeanCovarianceCorrelation(data.values.data(), data.samples, data.variables, moments);
    const bool finite = allFinite(moments.means.data(), moments.means.size()) &&
                        allFinite(moments.sds.data(), moments.sds.size());
    if (!finite) return notFinite;
    return anyDeviationBelow(moments.sds.data(), data.variables, leastDeviation) ? illegalData : success;
}

ErrorCode invertCorrelations(int p, FactorWork& work) {
    return invertRegular(p, work.moments.correlation.data(), work.scratch.data(), work.inverse.data());
}

// Squared multiple correlations (Guttman 1956).
ErrorCode estimateCommunalities(int p, FactorWork& work) {
    const ErrorCode code = invertCorrelations(p, work);
    if (code != success) return code;
    Block<double>& communality = work.result.model.communality;
    for (Index j = 0; j < communality.size(); ++j) {
        communality[j] = 1.0 - 1.0 / work.inverse[j * (communality.size() + 1)];
    }
    return success;
}

ErrorCode extract(Screens& screens, int p, const FactorOptions& options, bool byLikelihood,
                  FactorWork& work) {
    const double* correlation = work.moments.correlation.data();
    FactorModel& model = work.result.model;
    if (!byLikelihood) return extractPrincipalFactors(p, correlation, options.repetition != 0, model);
    const ErrorCode code = startLikelihood(p, correlation, options.useSmc != 0, model, work.likelihood);
    if (code != success) return code;
    screens.setProgress(30);
    return fitLikelihood(p, correlation, work.likelihood, model);
}

// Multiplies or divides each row by the root of the variable's communality.
void scaleRows(const Block<double>& scales, Index factors, bool divide, double* matrix) {
    for (Index j = 0; j < scales.size(); ++j) {
        for (Index k = 0; k < factors; ++k) {
            matrix[j * factors + k] =
                divide ? matrix[j * factors + k] / scales[j] : matrix[j * factors + k] * scales[j];
        }
    }
}

// The factors stay in the order of the extraction. One factor and none come out as they are.
ErrorCode rotate(int p, const FactorOptions& options, FactorWork& work) {
    FactorResult& result = work.result;
    const FactorModel& model = result.model;
    result.rotation = rotationOf(options);
    if (result.rotation == Rotation::none) return success;
    for (Index j = 0; j < work.rowScales.size(); ++j) {
        const bool scaled = options.standardize != 0 && model.communality[j] > 0.0;
        work.rowScales[j] = scaled ? std::sqrt(model.communality[j]) : 1.0;
    }

    const Index kept = model.kept;
    const Index count = work.rowScales.size() * kept;
    std::copy_n(model.loadings.data(), count, result.rotated.data());
    scaleRows(work.rowScales, kept, true, result.rotated.data());
    const bool oblique = result.rotation == Rotation::oblique;
    const double gamma = (2 - criterionOf(options, result.rotation)) / 2.0;
    if (oblique) {
        ErrorCode code = rotateOblique(p, model.kept, gamma, result.rotated.data(), result.oblique);
        if (code != success) return code;
        scaleRows(work.rowScales, kept, false, result.oblique.structure.data());
        code = findPattern(p, model.kept, result.oblique);
        if (code != success) return code;
        std::copy_n(result.oblique.pattern.data(), count, result.rotated.data());
    } else {
        rotateOrthogonal(p, model.kept, gamma, result.rotated.data());
        scaleRows(work.rowScales, kept, false, result.rotated.data());
    }
    for (Index k = 0; k < kept; ++k) {
        double sum = 0.0;
        for (Index i = k; i < count; i += kept) sum += result.rotated[i] * result.rotated[i];
        result.rotatedSumsOfSquares[k] = sum;
    }
    return success;
}

// Regression scores (Thomson 1939) of the standardized samples.
void findScores(const DataMatrix& data, FactorWork& work) {
    const Index variables = work.standardized.size();
    const int kept = work.result.model.kept;
    for (Index i = 0; i < data.samples; ++i) {
        const double* row = data.values.data() + i * variables;
        for (Index j = 0; j < variables; ++j) {
            work.standardized[j] = (row[j] - work.moments.means[j]) / work.moments.sds[j];
        }
        multiply(1, data.variables, kept, work.standardized.data(), work.coefficients.data(),
                 work.result.scores.data() + i * kept);
    }
}

ErrorCode compute(Screens& screens, const DataMatrix& data, const FactorOptions& options, bool byLikelihood,
                  FactorWork& work) {
    const int p = data.variables;
    ErrorCode code = findMoments(data, work.moments);
    if (code != success) return code;
    screens.setProgress(15);
    if (options.useSmc != 0) code = estimateCommunalities(p, work);
    if (code != success) return code;
    screens.setProgress(25);
    code = extract(screens, p, options, byLikelihood, work);
    if (code != success) return code;
    screens.setProgress(40);
    code = rotate(p, options, work);
    if (code != success) return code;
    screens.setProgress(60);
    code = invertCorrelations(p, work);
    if (code != success) return code;
    const FactorResult& result = work.result;
    multiply(p, p, result.model.kept, work.inverse.data(), result.finalLoadings(), work.coefficients.data());
    screens.setProgress(80);
    findScores(data, work);
    screens.setProgress(100);
    return success;
}

ErrorCode buildFactorGraph(Screens& screens, AnalysisRun& run, const FactorResult& result) {
    return buildScoreGraph(screens, run,
                           {.seriesPrefix = "factor",
                            .seriesCount = result.model.kept,
                            .scores = result.scores.data(),
                            .scoreStride = result.model.kept,
                            .vectorNames = &run.data.working.names,
                            .vectorCount = run.data.working.variables,
                            .vectors = result.finalLoadings(),
                            .vectorStride = result.model.kept,
                            .takesPreferences = true});
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    const FactorOptions& options = run.options.settings.factor;
    const bool byLikelihood = run.kind == maximumLikelihoodKind;
    FactorWork work;
    ErrorCode code = work.allocate(data, options.factorNumber, byLikelihood);
    if (code != success) return code;

    startProgress(screens, run.report);
    code = compute(screens, data, options, byLikelihood, work);
    screens.hideProgress();
    if (code != success) return code;
    writeFactorReport(screens, run,
                      byLikelihood ? "maximum likelihood analysis statistics"
                                   : "principal factor analysis statistics",
                      work.result);
    return buildFactorGraph(screens, run, work.result);
}

} // namespace

const Analysis factorAnalysis = {.fields = fields, .driver = run, .isEnabled = isEnabled, .refuse = refuse};
