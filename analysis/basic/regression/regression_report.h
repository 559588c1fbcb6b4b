#pragma once

#include "analysis/basic/regression/regression_result.h"
#include "analysis/run/analysis_run.h"

// Writes report and status of a regression on the run's working data.
void writeRegressionReport(AnalysisRun& run, const RegressionOptions& options,
                           const RegressionResult& result);

// The line under the caption of a table with intervals.
void writeCoverage(Report& report, double alpha);
