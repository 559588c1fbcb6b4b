#pragma once

#include "analysis/run/analysis_run.h"
#include "report/screens.h"

// The driver of multiple regression and of the curve models.

// Runs the model of run.kind: transforms the variables, selects among them, fits, keeps the model for
// prediction, writes the report and builds the graph. Codes in order: invalidDegree, noEffectiveVariable,
// invalidInvolutionVariable, invalidPurposeVariable, outOfMemory, notFinite (a value or moment), illegalData
// (a deviation below 0.001 in the data or none after the transformation), singularMatrix; noEffectiveVariable
// again when no variable is selected; graphNotBuilt.
[[nodiscard]] ErrorCode runRegression(Screens& screens, AnalysisRun& run, const RegressionOptions& options);
