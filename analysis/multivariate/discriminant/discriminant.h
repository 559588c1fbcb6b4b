#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 6: tells groups of samples apart by Fisher's linear function (two groups) or by canonical functions
// (three and more), on request after a test of equal covariances and a forward selection of the variables.
// Codes in order: illegalGroupVariable, noEffectiveVariable (no other variable is left), outOfMemory,
// singularMatrix; graphNotBuilt.
extern const Analysis discriminantAnalysis;
