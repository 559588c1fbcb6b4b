#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 0: nine descriptive statistics of each variable; on request the covariance and correlation matrices
// and the rank correlations of all pairs. Codes: outOfMemory.
extern const Analysis fundamentalStatistics;
