#include "analysis/basic/regression/fitted_model.h"

#include <algorithm>
#include <cstdio>

namespace {

void nameModel(FittedModel& model, const CurveModel& curve) {
    if (curve.name == nullptr) {
        std::snprintf(model.title.data(), fittedModelTitleSize, "multiple regression analysis");
    } else {
        std::snprintf(model.title.data(), fittedModelTitleSize, "%s curve", curve.name);
    }
}

} // namespace

void keepRegressionModel(AnalysisRun& run, const RegressionResult& result) {
    FittedModel& model = run.data.model;
    const RegressionFit& fit = result.fit;
    const MomentMatrices& moments = result.regressedMoments();
    const DataMatrix& data = run.data.working;
    const Index purpose = data.variables - 1;
    model.kind = run.kind;
    model.count = static_cast<std::int32_t>(fit.count);
    model.constant = fit.constant;
    model.alpha = fit.alpha;
    model.residualVariance = fit.residualVariance;
    nameModel(model, result.model);

    std::copy_n(result.degrees.data(), purpose, model.degrees.data());
    std::copy_n(result.ownMoments.means.data(), purpose, model.startValues.data());
    std::fill(model.terms.begin(), model.terms.end(), 0);
    for (Index j = 0; j < fit.count; ++j) {
        const Index column = fit.variables[j];
        model.variables[j] = static_cast<std::int32_t>(column);
        model.coefficients[j] = fit.coefficients[j];
        model.means[j] = moments.means[column];
        model.terms[column] = 1;
    }

    // Without an interval nothing was inverted; a prediction that wants one does it.
    model.hasRoot = fit.hasRoot;
    model.inverted = fit.hasRoot || fit.alpha != 0.0;
    if (model.inverted) {
        std::copy(fit.intervalMatrix.begin(), fit.intervalMatrix.end(), model.inverse.begin());
    } else {
        copyMinor(moments.covariance, fit.variables.data(), fit.count, data.samples, model.inverse.data(),
                  fit.count);
    }
}
