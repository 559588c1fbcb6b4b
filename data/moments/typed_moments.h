#pragma once

#include "data/moments/delimited_cells.h"

// A square matrix of correlations (its diagonal is ones) or covariances, with names in the head and the first
// column, of which the lower triangle is enough. Above it may stand rows "n", "mean" and "sd". Covariances
// and deviations have the divisor N - 1 unless `divisorIsN`, and are brought to N. `rounding` becomes what
// the decimals of the matrix leave open of a correlation. Success, outOfMemory, or illegalData with the
// refusal.
[[nodiscard]] ErrorCode readTypedMoments(const DelimitedCells& cells, bool divisorIsN, MomentTable& table,
                                         double& rounding, MomentsRefusal& refusal);
