#pragma once

#include "analysis/multivariate/discriminant/discriminant_function.h"
#include "analysis/run/analysis_run.h"
#include "report/screens.h"

// What a discriminant analysis found.
struct DiscriminantResult {
    GroupStatistics statistics;
    BoxTest box;
    VariableSelection selection;
    DiscriminantFunctions functions;

    ErrorCode allocate(const DataMatrix& data, int groups);
};

// Replaces the lower text and the status, and shows them.
void writeDiscriminantReport(Screens& screens, AnalysisRun& run, const DiscriminantResult& result);
