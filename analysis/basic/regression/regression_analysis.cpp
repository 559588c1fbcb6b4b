#include "analysis/basic/regression/regression_analysis.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "analysis/basic/regression/fitted_model.h"
#include "analysis/basic/regression/least_squares_regression.h"
#include "analysis/basic/regression/regression_charts.h"
#include "analysis/basic/regression/regression_deviations.h"
#include "analysis/basic/regression/regression_expressions.h"
#include "analysis/basic/regression/regression_report.h"
#include "analysis/run/run_report.h"
#include "analysis/run/score_graph.h"
#include "data/moments/working_moments.h"
#include "numeric/stand_in_rows.h"

namespace {

// Of a transformed column, as a share of its mean.
constexpr double leastRelativeDeviation = 1e-9;

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
    const Index purpose = data.variables - 1;
    for (Index s = 0; s < data.rows(); ++s) {
        const double* row = data.row(s);
        if (!std::all_of(row, row + purpose, model.takesExplanatory)) return invalidInvolutionVariable;
    }
    for (Index s = 0; s < data.rows(); ++s) {
        if (!model.takesPurpose(data.at(s, purpose))) return invalidPurposeVariable;
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
    const Index purpose = data.variables - 1;
    for (Index s = 0; s < data.samples; ++s) {
        const double* row = data.row(s);
        double* transformed = result.transformed.row(s);
        for (Index v = 0; v < purpose; ++v) {
            transformed[v] = result.model.explanatory(row[v], result.degrees[v]);
        }
        transformed[purpose] = result.model.purpose(row[purpose]);
    }
}

bool isTransformed(const RegressionResult& result, Index column, Index purpose) {
    return column < purpose ? result.model.changesExplanatory(result.degrees[column])
                            : result.model.changesPurpose();
}

// The moments of the data and of what is regressed, which those in the place of samples are.
ErrorCode findAllMoments(const Numerics& numerics, const DataMatrix& data, RegressionResult& result) {
    const ErrorCode code = findMoments(numerics, data, result.ownMoments);
    if (code != success || !result.transforms()) return code;
    if (data.moments != nullptr) return findMoments(numerics, data, result.moments);
    transform(data, result);
    if (!allFinite(result.transformed)) return notFinite;
    return numerics.moments(result.transformed.data(), data.samples, data.variables, result.moments);
}

ErrorCode computeMoments(const Numerics& numerics, const DataMatrix& data, RegressionResult& result) {
    const ErrorCode code = findAllMoments(numerics, data, result);
    if (code != success) return code;
    const MomentMatrices& moments = result.regressedMoments();
    if (!allFinite(result.ownMoments.means) || !allFinite(moments.means) || !allFinite(moments.sds)) {
        return notFinite;
    }
    // Transformed columns may deviate little.
    const bool hasOwn = data.moments == nullptr || !result.transforms();
    if (hasOwn && numerics.anyConstant(result.ownMoments)) return illegalData;
    for (Index v = 0; v < data.variables; ++v) {
        if ((!hasOwn || isTransformed(result, v, data.variables - 1)) &&
            !(moments.sds[v] > leastRelativeDeviation * std::fabs(moments.means[v]))) {
            return illegalData;
        }
    }
    if (data.moments != nullptr) findStandInRows(moments.covariance, data.samples, result.standIns);
    return success;
}

RegressionData regressedData(const DataMatrix& data, const RegressionResult& result) {
    if (data.moments != nullptr) {
        return {result.standIns.data(), data.samples, data.variables, result.regressedMoments(),
                result.standIns.rows()};
    }
    const double* values = result.transforms() ? result.transformed.data() : data.values.data();
    return {values, data.samples, data.variables, result.regressedMoments()};
}

// The test is that of the correlation matrix alone.
ErrorCode fitModel(Screens& screens, const Numerics& numerics, const RegressionData& data, double alpha,
                   DeterminantTest test, RegressionFit& fit) {
    return numerics.textbook ? fitByLeastSquares(screens, numerics, data, alpha, fit)
                             : fitByCorrelations(screens, data, alpha, test, fit);
}

ErrorCode fitAll(Screens& screens, const Numerics& numerics, const RegressionData& data, double alpha,
                 RegressionFit& fit) {
    ErrorCode code = screens.setProgress(20);
    if (code == success) code = fit.allocate(data.predicted(), data.purpose());
    if (code != success) return code;
    std::iota(fit.variables.begin(), fit.variables.end(), Index{0});
    return fitModel(screens, numerics, data, alpha, DeterminantTest::refuseNegative, fit);
}

ErrorCode fitSelected(Screens& screens, const Numerics& numerics, const RegressionData& data,
                      const RegressionOptions& options, const UpdateRule& rule, RegressionResult& result) {
    const StepwiseSelection& selection = result.selection;
    ErrorCode code = screens.setProgress(15);
    if (code == success)
        code = selectVariables(numerics, data, options, result.selection, {&screens, 15, 40}, rule);
    if (code == success && selection.count == 0) code = noEffectiveVariable;
    if (code == success) code = result.fit.allocate(data.predicted(), selection.count);
    if (code != success) return code;
    std::copy_n(selection.variables.begin(), selection.count, result.fit.variables.begin());
    return fitModel(screens, numerics, data, options.alpha, DeterminantTest::none, result.fit);
}

// Predictions and their limits on the scale of the purpose variable.
void computeResponses(RegressionResult& result) {
    const RegressionFit& fit = result.fit;
    for (Index s = 0; s < result.predictions.size(); ++s) {
        result.predictions[s] = result.model.response(fit.predictions[s]);
        result.infima[s] = result.model.response(fit.predictions[s] - fit.halfWidths[s]);
        result.suprema[s] = result.model.response(fit.predictions[s] + fit.halfWidths[s]);
        if (result.infima[s] > result.suprema[s]) std::swap(result.infima[s], result.suprema[s]);
    }
}

ErrorCode compute(Screens& screens, const AnalysisRun& run, const RegressionOptions& options,
                  RegressionResult& result) {
    const Numerics& numerics = *run.numerics;
    fillDegrees(run, result.degrees);
    ErrorCode code = computeMoments(numerics, run.data.working, result);
    if (code != success) return code;
    const RegressionData data = regressedData(run.data.working, result);
    // A structure shows all digits of a number.
    const UpdateRule rule = {.updates = run.report.structure == nullptr};
    code = isStepwise(options) ? fitSelected(screens, numerics, data, options, rule, result)
                               : fitAll(screens, numerics, data, options.alpha, result.fit);
    if (code != success) return code;
    computeResponses(result);
    return success;
}

ErrorCode buildRegressionGraph(Screens& screens, AnalysisRun& run, const RegressionResult& result) {
    constexpr Index seriesCount = 3;
    constexpr const char* series[seriesCount] = {"theoretic score", "standard resudial", "measure value"};
    if (run.options.settings.expressGraph == 0) return success;
    const DataMatrix& data = run.data.working;
    Matrix scores;
    const ErrorCode code = scores.allocate(data.samples, seriesCount);
    if (code != success) return code;
    for (Index s = 0; s < data.samples; ++s) {
        double* row = scores.row(s);
        row[0] = result.predictions[s];
        row[1] = result.fit.standardizedResiduals[s];
        row[2] = data.at(s, data.variables - 1);
    }
    return buildScoreGraph(screens, run,
                           {.seriesNames = series, .seriesCount = seriesCount, .scores = &scores});
}

// Without an interval there are no limits.
ErrorCode keepRegressionColumns(AnalysisRun& run, const RegressionResult& result) {
    const DataMatrix& data = run.data.working;
    const bool hasLimits = result.fit.alpha != 0.0;
    return keepColumns(run.columns, data.samples, hasLimits ? 5 : 3, [&](SampleColumns& columns) {
        columns.add("prediction", [&](Index s) { return result.predictions[s]; });
        columns.add("residual",
                    [&](Index s) { return data.at(s, data.variables - 1) - result.predictions[s]; });
        columns.add("s.residual", [&](Index s) { return result.fit.standardizedResiduals[s]; });
        if (!hasLimits) return;
        columns.add("infimum", [&](Index s) { return result.infima[s]; });
        columns.add("supremum", [&](Index s) { return result.suprema[s]; });
    });
}

} // namespace

ErrorCode RegressionResult::allocate(const DataMatrix& data) {
    const Index n = data.rows();
    const Index p = data.variables;
    ErrorCode code = ownMoments.allocate(p) | degrees.allocate(p) | selection.allocate(p) |
                     predictions.allocate(n) | infima.allocate(n) | suprema.allocate(n);
    if (transforms()) code |= transformed.allocate(n, p) | moments.allocate(p);
    if (data.moments != nullptr) code |= standIns.allocate(2 * p, p);
    return code;
}

ErrorCode runRegression(Screens& screens, AnalysisRun& run, const RegressionOptions& options) {
    if (reorderWorkingBySelection(run.data) != success) return outOfMemory;
    const DataMatrix& data = run.data.working;
    RegressionResult result(*findCurveModel(run.kind));
    if (result.model.hasDegrees && !degreesArePositive(run)) return invalidDegree;
    if (data.variables < 2) return noEffectiveVariable;
    ErrorCode code = checkValues(result.model, data);
    if (code == success) code = result.allocate(data);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, run, options, result);
    screens.hideProgress();
    if (code != success) return code;

    keepRegressionModel(run, result);
    noteRegressionDeviations(run, regressedData(data, result), result.fit);
    writeRegressionReport(run, options, result);
    code = keepRegressionColumns(run, result);
    if (code == success) code = keepRegressionExpressions(run, result);
    if (code == success) code = buildRegressionPicture(run, result);
    if (code != success) return code;
    closeReport(screens, run.report);
    return buildRegressionGraph(screens, run, result);
}
