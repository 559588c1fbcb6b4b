#pragma once

#include "analysis/basic/regression/regression_result.h"
#include "analysis/run/analysis_run.h"

// Keeps a regression or curve model in run.data.model for prediction. A driver keeps its model when the
// engine has succeeded, before it writes the report. run.kind is the kind that was run, and the working part
// has its purpose variable last.
void keepRegressionModel(AnalysisRun& run, const RegressionResult& result);
