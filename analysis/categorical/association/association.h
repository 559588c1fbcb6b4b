#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 10: every variable holds categories; the cross table of all categories, and for every pair of
// variables chi-square, five coefficients of association and, for ordered categories, gamma and twice tau-b
// (tau-b by the textbook). Codes: illegalCategoricalData, outOfMemory.
extern const Analysis associationAnalysis;
