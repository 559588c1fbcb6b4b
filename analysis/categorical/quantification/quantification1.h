#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 11, quantification 1: least squares of the purpose variable on the categories of all others, the first
// category of each being the reference. Keeps its model for prediction. Codes: noEffectiveVariable without
// items, illegalCategoricalData, outOfMemory, singularMatrix.
extern const Analysis quantification1;
