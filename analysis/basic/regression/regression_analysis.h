#pragma once

#include <array>

#include "analysis/basic/regression/regression_result.h"
#include "analysis/run/analysis_run.h"
#include "analysis/run/option_field.h"

// What multiple regression and the curve models share: option fields, their rules and the driver.

// Fields of a group of options at `group` of AnalysisOptions, and the purpose variable.
std::array<OptionField, 6> regressionFields(std::size_t group);

// The criterion belongs to the stepwise methods, its two limits to the F criterion.
bool isRegressionFieldEnabled(const RegressionOptions& options, const OptionField& field);

// The alert that refuses the options, or null. The limits are compared for every method and criterion.
const char* refuseRegression(const AnalysisOptions& options, const RegressionOptions& regression);

// Runs the model of run.kind: transforms the variables, selects among them, fits, keeps the model for
// prediction, writes the report and builds the graph. Codes in order: invalidDegree, noEffectiveVariable,
// invalidInvolutionVariable, invalidPurposeVariable, outOfMemory, notFinite (a value or moment), illegalData
// (a deviation below 0.001 in the data or none after the transformation), singularMatrix; noEffectiveVariable
// again when no variable is selected; graphNotBuilt.
ErrorCode runRegression(Screens& screens, AnalysisRun& run, const RegressionOptions& options);
