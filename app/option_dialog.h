#pragma once

#include "analysis/run/analysis_kind.h"
#include "app/program.h"

// Shows the option dialog of a kind, whose template and option fields say all about it. True: the options are
// in the run; false: cancelled, and nothing has changed.
bool showOptionDialog(Program& program, AnalysisRun& run, const AnalysisKind& kind);
