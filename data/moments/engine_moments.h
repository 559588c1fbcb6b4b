#pragma once

#include "data/moments/delimited_cells.h"

// Moments as an engine's statement gives them, with the divisor N. In one row: "n", "left_out", then
// "mean_NAME", "max_NAME" and "cov_I_J" of the places of the means, or of their names; or in one row for each
// variable: "i", "n", "left_out", "name", "mean", "max", "cov_1", "cov_2", ... Those of groups have the
// group's number in front.

// Whether a head is of this form.
bool isEngineHead(const DelimitedCells& cells);

// Success, outOfMemory, or illegalData with the refusal.
[[nodiscard]] ErrorCode readEngineMoments(const DelimitedCells& cells, MomentTable& table,
                                          MomentsRefusal& refusal);
