#pragma once

#include "numeric/block.h"

// Common factors of p variables, as they are extracted from a correlation matrix.
struct FactorModel {
    int requested = 0; // as the user gave it: 0 and less keep no factor, more than p at most p
    int kept = 0;
    Block<double> communality;   // p
    Block<double> loadings;      // p x kept
    Block<double> sumsOfSquares; // kept, of the loadings of each factor

    // Room for all requested factors, with communalities of 1. Returns 0 or outOfMemory.
    ErrorCode allocate(int p, int requestedFactors);
};

// The number of factors that arrays are made for.
Index factorRoom(int requested);

// Principal factors of the p x p correlation matrix (Thomson 1934): the leading eigenvectors, each times the
// root of its eigenvalue, of the matrix with the communalities on its diagonal. With `repeat` the
// communalities are replaced by the sums of squares of the loadings until they move by less than 1e-5, 70
// times at most; once otherwise. Only positive eigenvalues count, which can lower the number of factors.
// Returns 0 or outOfMemory.
ErrorCode extractPrincipalFactors(int p, const double* correlation, bool repeat, FactorModel& model);
