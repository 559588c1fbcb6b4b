#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 12, quantification 2: canonical discriminant analysis of groups on the categories of all other
// variables. Codes: noEffectiveVariable without items, illegalGroupVariable, illegalCategoricalData,
// outOfMemory, and for items that determine one another eigenNotConvergent (three groups or more) or
// singularMatrix (two groups); graphNotBuilt.
extern const Analysis quantification2;
