#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 13, quantification 3: scores of the rows and of the columns of a two-way table that are correlated as
// highly as possible. The table has a row for each sample and a column for each category of all variables, or
// is the data as it stands. Codes: tooFewSamples and illegalCategoricalData (categorical variables),
// outOfMemory, eigenNotConvergent for values that are not finite.
extern const Analysis quantification3;
