#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 7: hierarchical clusters of the samples or the variables, merge by merge and as a text dendrogram.
// Codes in order: outOfMemory, illegalData (a standard deviation below 0.001, or by the textbook a constant
// variable), singularMatrix (the correlations, for Mahalanobis distances), illegalData (no distance left
// below 1e300).
extern const Analysis clusterAnalysis;
