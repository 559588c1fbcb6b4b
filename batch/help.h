#pragma once

#include <cstdio>

#include "analysis/run/analysis_kind.h"

// Prints what the program does, or with a kind what that analysis takes.
void printHelp(std::FILE* file, const AnalysisKind* kind);
