#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 2: the leading components of the correlation or covariance matrix with Bartlett's tests of the
// equality of the remaining eigenvalues, loadings and standardized scores; graph of the scores with the
// loadings as vectors. Codes in order: outOfMemory, notFinite, illegalData (a variable as good as
// constant), graphNotBuilt.
extern const Analysis principalComponents;
