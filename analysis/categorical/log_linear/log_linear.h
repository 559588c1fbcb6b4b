#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 14: all hierarchical log-linear models of a three-way table, ranked by AIC, and two nested ones in
// detail. The table is counted from three categorical variables, or is the data matrix read in row order.
// Codes: illegalVariableNumber, tooFewSamples and illegalCategoricalData of variables, or
// illegalCategoryNumber of a table; outOfMemory; notFinite for counts that are none.
extern const Analysis logLinearAnalysis;
