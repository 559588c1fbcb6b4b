#pragma once

#include "analysis/basic/regression/regression_result.h"
#include "analysis/run/analysis_run.h"

// Writes and shows report and status of a regression on the run's working data.
void writeRegressionReport(Screens& screens, AnalysisRun& run, const RegressionOptions& options,
                           const RegressionResult& result);
