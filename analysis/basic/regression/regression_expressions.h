#pragma once

#include "analysis/basic/regression/regression_result.h"
#include "analysis/run/analysis_run.h"

// Keeps the prediction, the residuals and, with an interval, its limits as expressions, if they are wanted.
// They need the means and the fit of the result, no samples. Returns success or outOfMemory.
[[nodiscard]] ErrorCode keepRegressionExpressions(AnalysisRun& run, const RegressionResult& result);
