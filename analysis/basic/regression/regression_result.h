#pragma once

#include "analysis/basic/regression/curve_model.h"
#include "analysis/basic/regression/stepwise_selection.h"
#include "data/data_set.h"

// A fitted model with what its report, its graph and predictions show.
struct RegressionResult {
    const CurveModel& model;
    MomentMatrices ownMoments; // of the data's own columns
    Matrix transformed;        // samples x variables; empty when the model transforms nothing
    MomentMatrices moments;    // of the transformed columns; empty likewise
    Matrix standIns;           // rows in the place of samples that are not here; else empty
    Block<double> degrees;     // by working column
    StepwiseSelection selection;
    RegressionFit fit; // allocated when its variables are known

    // Of each sample, on the scale of the purpose variable itself.
    Block<double> predictions;
    Block<double> infima;
    Block<double> suprema;

    explicit RegressionResult(const CurveModel& curve) : model(curve) {}

    bool transforms() const { return model.name != nullptr; }
    const MomentMatrices& regressedMoments() const { return transforms() ? moments : ownMoments; }

    // Zero-filled arrays but the fit's; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(const DataMatrix& data);
};

// Whether a method of the options selects variables.
inline bool isStepwise(const RegressionOptions& options) {
    return options.method >= 1 && options.method <= 4;
}
