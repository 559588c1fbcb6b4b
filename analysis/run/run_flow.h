#pragma once

#include "analysis/run/frontend.h"

// Runs the analysis of a menu command, 710..756: every run starts from the loaded column order. Commands that
// are never run and kinds without an analysis do nothing. Returns the reported code.
ErrorCode runAnalysisCommand(Frontend& frontend, Settings& defaults, AnalysisRun& run, int command);

// Shows the option dialog of the run's kind and runs it; ends by reporting the code.
ErrorCode dispatchAnalysis(Frontend& frontend, Settings& defaults, AnalysisRun& run);

// What the next runs compute with. What prediction kept comes from other numerics, and fits no longer.
void chooseNumerics(Frontend& frontend, AnalysisRun& run, const Numerics& numerics);

// Writes and shows the texts of a code.
ErrorCode reportResult(Screens& screens, AnalysisRun& run, ErrorCode code);

// Whether a command of the data and analysis menus can be chosen while data is loaded or not. Prediction is
// enabled by runs alone.
bool isCommandEnabled(int command, bool dataLoaded);
