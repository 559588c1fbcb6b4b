#pragma once

#include "analysis/run/analysis_run.h"

// The "save as default" flag of the check box `box`, 940..990.
std::int32_t& saveFlag(Settings& settings, int box);

// Copies the option group of every analysis whose "save as default" flag is set from the run into the kept
// defaults, then clears all flags of the run.
void commitSavedDefaults(Settings& defaults, AnalysisRun& run);
