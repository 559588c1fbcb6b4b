#include "analysis/basic/regression/regression_charts.h"

#include "analysis/run/fit_charts.h"

namespace {

// Of the model that the data keep, which has one explanatory variable.
void describeCurve(const AnalysisRun& run, ChartLayer& curve, ChartLayer* band) {
    const FittedModel& model = run.data.model;
    const CurveModel& scale = *findCurveModel(model.kind);
    const std::int32_t samples = run.data.working.samples;
    const double t = band != nullptr ? run.numerics->tTwoSidedQuantile(samples - 2, model.alpha) : 0.0;
    const auto distance = model.hasRoot ? distanceByRoot : distanceByInverse;
    for (Index k = 0; k < curve.size(); ++k) {
        const double x = scale.explanatory(curve.x[k], model.degrees[model.variables[0]]);
        const double value = model.constant + model.coefficients[0] * x;
        curve.y[k] = scale.response(value);
        if (band == nullptr) continue;
        const double deviation = x - model.means[0];
        const double halfWidth = intervalHalfWidth(distance(&deviation, 1, model.inverse.data()), t, samples,
                                                   model.residualVariance);
        band->lower[k] = scale.response(value - halfWidth);
        band->upper[k] = scale.response(value + halfWidth);
    }
}

} // namespace

ErrorCode buildRegressionPicture(AnalysisRun& run, const RegressionResult& result) {
    if (run.pictureWish.pictures.empty()) return success; // nor may there be samples
    const DataMatrix& data = run.data.working;
    const Index purpose = data.variables - 1;
    FitCharts fit = {.title = result.model.name != nullptr ? run.data.model.title.data() : "regression",
                     .purpose = data.name(purpose),
                     .measured = data.values.data() + purpose,
                     .measuredStride = data.variables,
                     .predicted = result.predictions.data(),
                     .residuals = result.fit.standardizedResiduals.data(),
                     .alpha = result.fit.alpha};
    if (result.fit.count == 1) {
        const Index column = result.fit.variables[0];
        fit.explanatory = data.values.data() + column;
        fit.explanatoryStride = data.variables;
        fit.explanatoryName = data.name(column);
        fit.describeCurve = describeCurve;
    }
    return buildPicture(run, fit);
}
