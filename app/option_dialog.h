#pragma once

#include "analysis/run/analysis_kind.h"
#include "app/program.h"

// Shows the option dialog of a kind, after its first dialog when it has one; templates and option fields say
// all about them. True: the options are in the run; false: one was cancelled, and nothing has changed.
bool showOptionDialog(Program& program, const AnalysisKind& kind);
