#include "analysis/basic/regression/fitted_model.h"

#include <algorithm>
#include <cstdio>

namespace {

void nameModel(FittedModel& model, const CurveModel& curve) {
    if (curve.name == nullptr) {
        std::snprintf(model.title.data(), model.title.size(), "multiple regression analysis");
    } else {
        std::snprintf(model.title.data(), model.title.size(), "%s curve", curve.name);
    }
}

} // namespace

void keepRegressionModel(AnalysisRun& run, const RegressionResult& result) {
    FittedModel& model = run.data.model;
    const RegressionFit& fit = result.fit;
    const MomentMatrices& moments = result.regressedMoments();
    const std::int32_t variables = run.data.working.variables;
    model.kind = run.kind;
    model.count = fit.count;
    model.constant = fit.constant;
    model.alpha = fit.alpha;
    model.residualVariance = fit.residualVariance;
    nameModel(model, result.model);

    std::copy_n(result.degrees.data(), variables - 1, model.degrees.data());
    std::copy_n(result.ownMoments.means.data(), variables - 1, model.startValues.data());
    std::fill(model.terms.begin(), model.terms.end(), 0);
    for (Index j = 0; j < fit.count; ++j) {
        const Index column = fit.variables[j];
        model.variables[j] = fit.variables[j];
        model.coefficients[j] = fit.coefficients[j];
        model.means[j] = moments.means[column];
        model.terms[column] = 1;
    }

    // Without an interval nothing was inverted; a prediction that wants one does it.
    model.inverted = fit.alpha != 0.0;
    if (model.inverted) {
        const Index count = fit.count;
        std::copy_n(fit.intervalMatrix.data(), count * count, model.inverse.data());
    } else {
        copyMinor(moments.covariance.data(), variables, fit.variables.data(), fit.count,
                  run.data.working.samples, model.inverse.data());
    }
}
