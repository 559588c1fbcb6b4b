#pragma once

#include "data/moments/moment_table.h"

// Reads moments from the bytes of a file, which are changed and have room for one more behind them: as an
// engine's statement gives them, or as a matrix that a person typed, whose deviations and covariances have
// the divisor N - 1 unless `divisorIsN` says N. They must be finite, symmetric and, up to rounding, those of
// some data. Returns success, outOfMemory, or illegalData with the refusal; the table is then empty.
[[nodiscard]] ErrorCode readMoments(char* bytes, Index length, bool divisorIsN, MomentTable& table,
                                    MomentsRefusal& refusal);
