#pragma once

#include "analysis/run/analysis_run.h"
#include "report/screens.h"

// Writes into the lower text and shows there what is doubted about the loaded data and what is left out of
// it, or why the last file was refused.
void checkData(Screens& screens, AnalysisRun& run);
