#pragma once

#include <cstdint>

#include "numeric/block.h"

// LuDecompose and the inverse from its factors, for orders from blockedOrder on: most of the work is products
// of blocks.

// scales (n) are the factors by which the rows count in the choice of pivots, and are exchanged with them.
// Returns success or decompositionFailed.
[[nodiscard]] ErrorCode decomposeByBlocks(Index n, Index stride, double* a, double* scales,
                                          std::int32_t* permutation, double& sign);

// inverse (n x n, in rows of stride doubles) from factors that are complete.
void invertByBlocks(Index n, Index stride, const double* factors, const std::int32_t* permutation,
                    double* inverse);
