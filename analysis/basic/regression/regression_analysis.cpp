#include "analysis/basic/regression/regression_analysis.h"

#include <algorithm>
#include <cmath>

#include "analysis/basic/regression/fitted_model.h"
#include "analysis/basic/regression/regression_report.h"
#include "analysis/run/score_graph.h"

namespace {

constexpr const char* methods[] = {"all", "forward", "backward", "forward-selection", "backward-elimination"};
constexpr const char* criteria[] = {"aic", "f"};

// Controls of the dialog.
constexpr int purposeList = 2101;
constexpr int methodButtons = 2102;
constexpr int criterionButtons = 2107;
constexpr int fInEdit = 2109;
constexpr int fOutEdit = 2110;
constexpr int alphaEdit = 2111;

// Of a transformed column, as a share of its mean.
constexpr double leastRelativeDeviation = 1e-9;

double valueAt(const DataMatrix& data, std::int32_t sample, std::int32_t variable) {
    return data.values[Index{sample} * data.variables + variable];
}

bool isChosenSlot(const AnalysisRun& run, int slot) {
    const std::int32_t variable = run.options.slotColumns[slot];
    return variable >= 1 && variable <= run.data.loaded.variables;
}

bool degreesArePositive(const AnalysisRun& run) {
    for (int slot = 0; slot < AnalysisOptions::slotCount; ++slot) {
        if (isChosenSlot(run, slot) && !(run.options.slotDegrees[slot] > 0.0)) return false;
    }
    return true;
}

// Whether the model takes every value of the explanatory variables, then of the purpose variable.
ErrorCode checkValues(const CurveModel& model, const DataMatrix& data) {
    for (std::int32_t i = 0; i < data.samples; ++i) {
        for (std::int32_t v = 0; v < data.variables - 1; ++v) {
            if (!model.takesExplanatory(valueAt(data, i, v))) return invalidInvolutionVariable;
        }
    }
    for (std::int32_t i = 0; i < data.samples; ++i) {
        if (!model.takesPurpose(valueAt(data, i, data.variables - 1))) return invalidPurposeVariable;
    }
    return success;
}

void fillDegrees(const AnalysisRun& run, Block<double>& degrees) {
    std::fill(degrees.begin(), degrees.end(), 1.0);
    for (int slot = 0; slot < AnalysisOptions::slotCount; ++slot) {
        if (!isChosenSlot(run, slot)) continue;
        const std::int32_t column = otherColumnOf(run.data, run.options.slotColumns[slot]);
        if (column >= 0) degrees[column] = run.options.slotDegrees[slot];
    }
}

void transform(const DataMatrix& data, RegressionResult& result) {
    const Index variables = data.variables;
    for (Index at = 0; at < data.count(); ++at) {
        const Index v = at % variables;
        result.transformed[at] = v + 1 < variables
                                     ? result.model.explanatory(data.values[at], result.degrees[v])
                                     : result.model.purpose(data.values[at]);
    }
}

bool isTransformed(const RegressionResult& result, Index column, Index variables) {
    return column + 1 < variables ? result.model.changesExplanatory(result.degrees[column])
                                  : result.model.changesPurpose();
}

// The moments of the data and of what is regressed.
ErrorCode computeMoments(const DataMatrix& data, RegressionResult& result) {
    const Index variables = data.variables;
    MeanCovarianceCorrelation(data.values.data(), data.samples, data.variables, result.ownMoments);
    if (result.transforms()) {
        transform(data, result);
        if (!allFinite(result.transformed.data(), result.transformed.size())) return notFinite;
        MeanCovarianceCorrelation(result.transformed.data(), data.samples, data.variables, result.moments);
    }
    const MomentMatrices& moments = result.regressedMoments();
    if (!allFinite(result.ownMoments.means.data(), variables) ||
        !allFinite(moments.means.data(), variables) || !allFinite(moments.sds.data(), variables)) {
        return notFinite;
    }
    if (anyDeviationBelow(result.ownMoments.sds.data(), data.variables, leastDeviation)) return illegalData;
    for (Index v = 0; v < variables; ++v) {
        if (isTransformed(result, v, variables) &&
            !(moments.sds[v] > leastRelativeDeviation * std::fabs(moments.means[v]))) {
            return illegalData;
        }
    }
    return success;
}

ErrorCode fit(Screens& screens, const RegressionData& data, const RegressionOptions& options,
              RegressionResult& result) {
    RegressionFit& fit = result.fit;
    if (!isStepwise(options)) {
        screens.setProgress(20);
        fit.count = data.variables - 1;
        for (std::int32_t v = 0; v < fit.count; ++v) fit.variables[v] = v;
        return fitRegression(screens, data, options.alpha, DeterminantTest::refuseNegative, fit);
    }
    screens.setProgress(15);
    const ErrorCode code = selectVariables(data, options, result.selection);
    if (code != success) return code;
    fit.count = result.selection.count;
    if (fit.count == 0) return noEffectiveVariable;
    std::copy_n(result.selection.variables.data(), fit.count, fit.variables.data());
    return fitRegression(screens, data, options.alpha, DeterminantTest::none, fit);
}

// Predictions and their limits on the scale of the purpose variable.
void computeResponses(RegressionResult& result) {
    const RegressionFit& fit = result.fit;
    for (Index i = 0; i < result.predictions.size(); ++i) {
        result.predictions[i] = result.model.response(fit.predictions[i]);
        result.infima[i] = result.model.response(fit.predictions[i] - fit.halfWidths[i]);
        result.suprema[i] = result.model.response(fit.predictions[i] + fit.halfWidths[i]);
        if (result.infima[i] > result.suprema[i]) std::swap(result.infima[i], result.suprema[i]);
    }
}

ErrorCode compute(Screens& screens, const AnalysisRun& run, const RegressionOptions& options,
                  RegressionResult& result) {
    const DataMatrix& working = run.data.working;
    fillDegrees(run, result.degrees);
    ErrorCode code = computeMoments(working, result);
    if (code != success) return code;
    const double* values = result.transforms() ? result.transformed.data() : working.values.data();
    const RegressionData data = {values, working.samples, working.variables, result.regressedMoments()};
    code = fit(screens, data, options, result);
    if (code == success) computeResponses(result);
    return code;
}

ErrorCode buildRegressionGraph(Screens& screens, AnalysisRun& run, const RegressionResult& result) {
    constexpr int seriesCount = 3;
    constexpr const char* names[seriesCount] = {"theoretic score", "standard resudial", "measure value"};
    if (run.options.settings.expressGraph == 0) return success;
    const DataMatrix& data = run.data.working;
    Block<double> scores;
    const ErrorCode code = scores.allocate(seriesCount * data.samples);
    if (code != success) return code;
    double* score = scores.data();
    for (std::int32_t i = 0; i < data.samples; ++i) {
        *score++ = result.predictions[i];
        *score++ = result.fit.standardizedResiduals[i];
        *score++ = valueAt(data, i, data.variables - 1);
    }
    return buildScoreGraph(screens, run,
                           {.seriesNames = names,
                            .seriesCount = seriesCount,
                            .scores = scores.data(),
                            .scoreStride = seriesCount});
}

} // namespace

ErrorCode RegressionResult::allocate(std::int32_t samples, std::int32_t variables) {
    const Index n = samples;
    const Index p = variables;
    ErrorCode code = ownMoments.allocate(variables) | degrees.allocate(p) | selection.allocate(variables) |
                     fit.allocate(samples, variables) | predictions.allocate(n) | infima.allocate(n) |
                     suprema.allocate(n);
    if (transforms()) code |= transformed.allocate(n * p) | moments.allocate(variables);
    return code;
}

std::array<OptionField, 6> regressionFields(std::size_t group) {
    return {{
        {.type = OptionType::variable,
         .name = "purpose",
         .help = "the variable to explain",
         .offset = offsetof(AnalysisOptions, purposes),
         .control = purposeList},
        {.type = OptionType::choice,
         .name = "method",
         .help = "how the explanatory variables are selected",
         .offset = group + offsetof(RegressionOptions, method),
         .control = methodButtons,
         .choices = methods},
        {.type = OptionType::choice,
         .name = "criterion",
         .help = "what the selection goes by",
         .offset = group + offsetof(RegressionOptions, criterion),
         .control = criterionButtons,
         .choices = criteria},
        {.type = OptionType::real,
         .name = "f-in",
         .help = "the least F to enter a variable",
         .offset = group + offsetof(RegressionOptions, fIn),
         .control = fInEdit,
         .arrows = 2112,
         .step = 0.1,
         .least = 0.01,
         .most = 99.0},
        {.type = OptionType::real,
         .name = "f-out",
         .help = "the largest F to remove a variable, below f-in",
         .offset = group + offsetof(RegressionOptions, fOut),
         .control = fOutEdit,
         .arrows = 2113,
         .step = 0.1,
         .least = 0.01,
         .most = 99.0},
        {.type = OptionType::real,
         .name = "alpha",
         .help = "of the prediction intervals, 0 for none",
         .offset = group + offsetof(RegressionOptions, alpha),
         .control = alphaEdit,
         .arrows = 2114,
         .step = 0.01,
         .least = 0.01,
         .most = 0.5},
    }};
}

bool isRegressionFieldEnabled(const RegressionOptions& options, const OptionField& field) {
    switch (field.control) {
    case criterionButtons:
        return options.method > 0;
    case fInEdit:
    case fOutEdit:
        return options.method > 0 && options.criterion == 1;
    default:
        return true;
    }
}

const char* refuseRegression(const AnalysisOptions& options, const RegressionOptions& regression) {
    if (!(regression.fIn > regression.fOut)) return "f-in should be larger than f-out";
    return options.purposes[0] == 0 ? "please select one purpose variable" : nullptr;
}

ErrorCode runRegression(Screens& screens, AnalysisRun& run, const RegressionOptions& options) {
    reorderWorkingBySelection(run.data);
    const DataMatrix& data = run.data.working;
    RegressionResult result(*findCurveModel(run.kind));
    if (result.model.hasDegrees && !degreesArePositive(run)) return invalidDegree;
    if (data.variables < 2) return noEffectiveVariable;
    ErrorCode code = checkValues(result.model, data);
    if (code == success) code = result.allocate(data.samples, data.variables);
    if (code != success) return code;

    startProgress(screens, run.report);
    code = compute(screens, run, options, result);
    screens.hideProgress();
    if (code != success) return code;

    keepRegressionModel(run, result);
    writeRegressionReport(screens, run, options, result);
    return buildRegressionGraph(screens, run, result);
}
