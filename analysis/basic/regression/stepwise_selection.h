#pragma once

#include "analysis/basic/regression/swept_model.h"
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
struct StepwiseSelection : SelectedModel {
    Block<SelectionStep> steps;
    Index stepCount = 0;

    // Zero-filled arrays for P variables, the purpose variable included; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index allVariables);
};

// When a step updates the model of the step before it instead of inverting its correlations anew.
struct UpdateRule {
    bool updates = true;   // false: never, for whom the steps are to have all their digits
    Index smallModel = 16; // below so many variables an inverse costs no more than an update
};

// Decimals of the numbers of a step that a report shows.
constexpr int stepDecimals = 6;

// Selects variables by options.method 1..4 with the criterion, fIn and fOut of the options:
// 1 enters while it can, and after each entry removes while it can; 2 starts from the full model, removes
// while it can and after each removal enters while it can; 3 enters only; 4 removes only. By F a variable
// enters when F is not below fIn and stays when F is above fOut; by AIC it moves when that makes the AIC
// smaller. A model of rule.smallModel variables and more is updated from step to step, in P^2 operations, as
// long as that leaves no doubt about a decision or about a printed digit, of which the steps have
// stepDecimals; else its inverse is made anew, and where that does not help either, every one is. Returns
// success (the model may be empty), outOfMemory, or singularMatrix when the full model of 2 or 4 has a
// negative determinant or, by textbook numerics, a rank below that.
[[nodiscard]] ErrorCode selectVariables(const Numerics& numerics, const RegressionData& data,
                                        const RegressionOptions& options, StepwiseSelection& selection,
                                        const Stage& stage = {}, const UpdateRule& rule = {});
