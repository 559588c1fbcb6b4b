#pragma once

#include "analysis/basic/regression/regression.h"
#include "analysis/run/settings.h"
#include "numeric/numerics.h"
#include "report/screens.h"

enum class StepMark { none, in, out };

// One test of the selection: determination and AIC of the model after it, and the F that it computed.
struct SelectionStep {
    Index variable;
    StepMark mark; // none: the test failed, and the model stays as it is
    double determination;
    double f;
    double aic;
};

// The model that a stepwise method ends with, its steps and its scratch. A run that fills the list of 2P + 1
// steps ends there.
struct StepwiseSelection {
    Block<Index> variables; // in model order
    Index count = 0;
    Block<SelectionStep> steps;
    Index stepCount = 0;

    Block<bool> inModel; // by column
    // P x P, of which a model of count variables has the first count rows and columns.
    Matrix matrix;         // scratch
    Matrix inverse;        // of the correlations of the model's variables
    Block<double> weights; // their standardized coefficients

    // Zero-filled arrays for P variables, the purpose variable included; 0 or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index allVariables);
};

// Selects variables by options.method 1..4 with the criterion, fIn and fOut of the options:
// 1 enters while it can, and after each entry removes while it can; 2 starts from the full model, removes
// while it can and after each removal enters while it can; 3 enters only; 4 removes only. By F a variable
// enters when F is not below fIn and stays when F is above fOut; by AIC it moves when that makes the AIC
// smaller. Returns success (the model may be empty), outOfMemory, or singularMatrix when the full model of 2
// or 4 has a negative determinant or, by textbook numerics, a rank below that.
[[nodiscard]] ErrorCode selectVariables(const Numerics& numerics, const RegressionData& data,
                                        const RegressionOptions& options, StepwiseSelection& selection,
                                        const Stage& stage = {});
