#pragma once

#include "analysis/run/analysis_kind.h"

// Kinds 4 and 5: common factors of the correlation matrix by principal axes or by maximum likelihood, rotated
// on request, with communalities, loadings and the scores of the samples. Codes in order: outOfMemory,
// notFinite, illegalData, singularMatrix (estimating communalities), singularFactorMatrix (maximum
// likelihood), singularMatrix (oblique rotation, then score coefficients); graphNotBuilt.
extern const Analysis factorAnalysis;
