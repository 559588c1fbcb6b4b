#pragma once

#include "analysis/run/analysis_run.h"
#include "analysis/run/frontend.h"

// What the last analysis has left besides its report: columns of the samples, pictures.

// Lets the user have them.
void offerResults(Frontend& frontend, const AnalysisRun& run);
// Forgets columns and charts; the graph stays as long as its window does.
void releaseResults(Frontend& frontend, AnalysisRun& run);
