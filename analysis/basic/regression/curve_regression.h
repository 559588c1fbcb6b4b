#pragma once

#include "analysis/run/analysis_kind.h"

// Kinds 41..46: linear regression on transformed variables (analysis/basic/regression/curve_model.h). Codes
// in order: invalidDegree (kind 41), noEffectiveVariable, invalidInvolutionVariable (42),
// invalidPurposeVariable (42..46), outOfMemory, notFinite, illegalData, singularMatrix; noEffectiveVariable
// again when no variable is selected; graphNotBuilt.
extern const Analysis polynomialRegression; // kind 41, whose degrees are asked for by a dialog of their own
extern const Analysis curveRegression;      // kinds 42..46
