#pragma once

#include <cstdio>

#include "analysis/run/analysis_kind.h"

// Prints what the program does, or with a kind what that analysis takes.
void printHelp(std::FILE* file, const AnalysisKind* kind);

// Prints an option and what it does, which stands in a column of its own, below the option where that is
// longer.
void printOption(std::FILE* file, const char* usage, const char* help);
