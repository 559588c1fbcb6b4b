#pragma once

#include "analysis/run/analysis_kind.h"

// Writes into run.repeating the arguments of the batch runner that repeat the analysis that is about to run:
// its kind, what differs from the first values of its options, degrees, exclusions, widths, numerics, policy
// and the full path, each quoted for the command line of Windows where it needs quotes. Empty when they do
// not fit, and for data that no file holds.
void writeRepeatCommand(AnalysisRun& run, const AnalysisKind& kind);

// Appends a word of a command line, quoted where it needs quotes; false when it does not fit.
bool appendQuoted(char* command, std::size_t size, const char* word);
