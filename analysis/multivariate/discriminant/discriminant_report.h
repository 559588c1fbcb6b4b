#pragma once

#include "analysis/multivariate/discriminant/discriminant_function.h"
#include "analysis/run/analysis_run.h"

// What a discriminant analysis found.
struct DiscriminantResult {
    GroupStatistics statistics;
    BoxTest box;
    VariableSelection selection;
    DiscriminantFunctions functions; // allocated for the selected variables

    // For all but the functions, with all variables selected. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(const DataMatrix& data, Index groups);
};

// Replaces the lower text and the status.
void writeDiscriminantReport(AnalysisRun& run, const DiscriminantResult& result);
