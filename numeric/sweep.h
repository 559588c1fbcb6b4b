#pragma once

#include "numeric/matrix.h"

// The sweep (Beale 1970, Goodnight 1979): what a variable that enters or leaves a model
// does to the sums of products of all others, in as many operations as the matrix has elements.

// Takes out of the rows and columns from `first` on of a square matrix what row and column k explain:
// a_ij -= a_ik / a_kk * a_kj. Both triangles count and may differ by rounding.
void sweepOut(Matrix& a, Index k, Index first);

// Sweeps a symmetric matrix, of which the lower triangle counts, on element k (Dempster 1969, who keeps it
// symmetric): d = a_kk becomes -1 / d, the rest of row k is divided by d and every other a_ij loses
// a_ik a_jk / d. Of a correlation matrix that leaves, after sweeps on the variables of a model, minus the
// inverse among these, their weights in the regression of each other variable, and the partial sums of
// products among the others. column (n) is scratch.
void sweepIn(Matrix& a, Index k, double* column);

// Undoes sweepIn on element k, in whatever order others were swept since.
void sweepBack(Matrix& a, Index k, double* column);
