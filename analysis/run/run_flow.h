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

// What became of the file that was opened last.
enum class DataState { none, refused, loaded };
DataState dataState(const DataSet& data, bool dataLoaded);

// Whether a command that needs data, or needs that there is none, can be chosen. Prediction is enabled by
// runs alone.
bool isCommandEnabled(int command, DataState state);

// Whether these options take data for a table of which rows are, or would be, left out with missing cells.
bool leavesTableRowsOut(const DataSet& data, const Analysis& analysis, const AnalysisOptions& options);
