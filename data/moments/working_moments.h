#pragma once

#include "data/data_set.h"
#include "numeric/numerics.h"

// The moments of the data that an analysis works on: computed from the samples by the run's kernel, or those
// that are there in the place of samples, in the order of the variables. Means that are unknown are 0, and
// where only correlations are known every deviation is 1.
ErrorCode findMoments(const Numerics& numerics, const DataMatrix& data, MomentMatrices& moments);

// The greatest size of a value of moments.
double greatestOfMoments(const DataMatrix& data);

// Copies the means and the covariances (row-major) of a group, from 0, for the first `count` variables.
void copyGroupMoments(const DataMatrix& data, Index group, Index count, double* means, double* covariances);
