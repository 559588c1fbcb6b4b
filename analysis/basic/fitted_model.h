#pragma once

#include "analysis/basic/regression_result.h"
#include "analysis/categorical/categorical_data.h"
#include "analysis/run/analysis_run.h"

// Keeping a fitted model in run.data.model for prediction (analysis/basic/prediction.h). A driver keeps its
// model when the engine has succeeded, before it writes the report. run.kind is the kind that was run, and
// the working part has its purpose variable last.

// A regression or curve model.
void keepRegressionModel(AnalysisRun& run, const RegressionResult& result);

// A quantification 1 model: quantities has layout.totalCategories + 2 numbers, those of the categories in the
// order of their global indices first. The prediction for a sample is the constant and the sum of the
// quantities of its categories; the last two numbers do not count in it. Returns success or outOfMemory.
ErrorCode keepQuantificationModel(AnalysisRun& run, double constant, const CategoryLayout& layout,
                                  const double* quantities);
