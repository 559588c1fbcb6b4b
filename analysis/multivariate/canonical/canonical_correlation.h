#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 3: the canonical correlations between the purpose variables and all others, with Bartlett's and Rao's
// tests, redundancies, weights and structure matrices. Codes in order: noEffectiveVariable (one of the groups
// is empty), outOfMemory, illegalData (a standard deviation below 0.001), singularMatrix (the explanatory
// variables).
extern const Analysis canonicalCorrelation;
