#pragma once

#include "analysis/basic/regression/regression_result.h"
#include "analysis/run/analysis_run.h"

// Describes the picture that is wished for of a regression whose model the data keep: fitPictures of
// analysis/run/fit_charts.h. Returns success or outOfMemory.
[[nodiscard]] ErrorCode buildRegressionPicture(AnalysisRun& run, const RegressionResult& result);
