#pragma once

#include "data/moments/delimited_cells.h"

// What a matrix that a person types is made of besides what stands in it.
struct TypedMoments {
    bool divisorIsN = false; // of deviations and covariances; else N - 1
    int decimals = 0;        // the most of a number in the matrix: what it is rounded to
};

// A square matrix of correlations (its diagonal is ones) or covariances, with names in the head and the first
// column, of which the lower triangle is enough. Above it may stand rows "n", "mean" and "sd". Covariances
// are brought to the divisor N. Success, outOfMemory, or illegalData with the refusal.
[[nodiscard]] ErrorCode readTypedMoments(const DelimitedCells& cells, TypedMoments& typed, MomentTable& table,
                                         MomentsRefusal& refusal);
