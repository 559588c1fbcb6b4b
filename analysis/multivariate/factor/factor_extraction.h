#pragma once

#include "analysis/multivariate/factor/settling.h"
#include "numeric/matrix.h"
#include "numeric/numerics.h"
#include "report/screens.h"

// Common factors of p variables, as they are extracted from a correlation matrix.
struct FactorModel {
    int requested = 0;           // as the user gave it: 0 and less keep no factor, more than p at most p
    Block<double> communality;   // p
    Matrix loadings;             // p x factors
    Block<double> sumsOfSquares; // of the loadings of each factor
    Settling settling;           // of the communalities or uniquenesses; unchanged where nothing is repeated

    Index kept() const { return loadings.columns(); }

    // Room for all requested factors, with communalities of 1. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index p, int requestedFactors);
    // Leaves zeros for so many factors; the communalities stay. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode keep(Index factors);
};

// The number of factors that room is asked for before it is known how many there are.
Index factorRoom(int requested);

// Principal factors of the p x p correlation matrix (Thomson 1934): the leading eigenvectors, each times the
// root of its eigenvalue, of the matrix with the communalities on its diagonal. With `repeat` the
// communalities are replaced by the sums of squares of the loadings until they move by less than 1e-5, 70
// times at most, or by less than the tolerance of the numerics, 10,000 times at most; once otherwise. Only
// positive eigenvalues count, which can lower the number of factors. Returns success, outOfMemory or a code
// of setProgress, which long repetitions ask now and then.
[[nodiscard]] ErrorCode extractPrincipalFactors(Screens& screens, const Numerics& numerics,
                                                const Matrix& correlation, bool repeat, FactorModel& model);
