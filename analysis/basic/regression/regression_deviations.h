#pragma once

#include "analysis/basic/regression/regression.h"
#include "analysis/run/analysis_run.h"

// Names the statistics of a regression through correlations that differ from a textbook's by more than their
// last digits (noteDeviation). Nothing is to be named under textbook numerics.
void noteRegressionDeviations(AnalysisRun& run, const RegressionData& data, const RegressionFit& fit);
