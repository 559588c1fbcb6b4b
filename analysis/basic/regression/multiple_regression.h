#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 1: linear regression of the purpose variable on all other variables or on some that a stepwise method
// selects. Codes in order: noEffectiveVariable, outOfMemory, notFinite, illegalData, singularMatrix;
// noEffectiveVariable again when no variable is selected; graphNotBuilt.
extern const Analysis multipleRegression;
