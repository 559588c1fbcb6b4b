#pragma once

#include "analysis/basic/regression/curve_model.h"
#include "analysis/basic/regression/stepwise_selection.h"

// A fitted model with what its report, its graph and predictions show.
struct RegressionResult {
    const CurveModel& model;
    MomentMatrices ownMoments; // of the data's own columns
    Block<double> transformed; // samples x variables; empty when the model transforms nothing
    MomentMatrices moments;    // of the transformed columns; empty likewise
    Block<double> degrees;     // by working column
    StepwiseSelection selection;
    RegressionFit fit;

    // Of each sample, on the scale of the purpose variable itself.
    Block<double> predictions;
    Block<double> infima;
    Block<double> suprema;

    explicit RegressionResult(const CurveModel& curve) : model(curve) {}

    bool transforms() const { return model.name != nullptr; }
    const MomentMatrices& regressedMoments() const { return transforms() ? moments : ownMoments; }

    ErrorCode allocate(std::int32_t samples, std::int32_t variables);
};

// Whether a method of the options selects variables.
inline bool isStepwise(const RegressionOptions& options) {
    return options.method >= 1 && options.method <= 4;
}
