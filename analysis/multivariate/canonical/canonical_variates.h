#pragma once

#include "analysis/multivariate/canonical/canonical_tests.h"
#include "data/data_set.h"
#include "numeric/moments.h"
#include "report/screens.h"

// Pairs of linear combinations, one of q1 explanatory variables and one of q2 purpose variables, with the
// highest possible correlations: m = min(q1, q2) pairs.
struct CanonicalVariates {
    Index q1 = 0;
    Index q2 = 0;
    Index pairs = 0; // m
    MomentMatrices moments;
    Matrix r11;                  // q1 x q1: correlations among the explanatory variables
    Matrix r22;                  // q2 x q2
    Matrix r12;                  // q1 x q2
    Matrix factors;              // q1 x q1: scratch, triangular factors of r11
    Matrix inverse;              // of r11
    Matrix regression;           // q1 x q2: r11^-1 r12
    Matrix explained;            // q2 x q2: r12' r11^-1 r12, then whitened
    Matrix whitening;            // q2 x q2
    Matrix vectors;              // q2 x q2
    Matrix product;              // q2 x q2: scratch
    Block<double> squares;       // q2: squared canonical correlations, descending; m are of use
    Block<double> correlations;  // m
    Matrix explanatoryWeights;   // q1 x m, for standardized variables; each variate has variance 1
    Matrix purposeWeights;       // q2 x m
    Matrix explanatoryStructure; // q1 x m: correlations of the variables with their variates
    Matrix purposeStructure;     // q2 x m
    Matrix redundancy;           // 2 x (m + 1): explanatory, purpose; the last column is the total
    // Of all pairs; no report shows them.
    double meanSquare = 0.0;        // of the canonical correlations
    double generalisedSquare = 0.0; // 1 - product of 1 - square
    double harmonicSquare = 0.0;    // 1 - harmonic mean of 1 - square
    CanonicalTests tests;

    // Zero-filled arrays for both groups, none of them empty; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index explanatory, Index purpose);
};

// Fills the allocated record from data, whose first q1 columns are the explanatory variables and the next q2
// the purpose variables, and moves the progress to 100. Returns success, illegalData (a variable
// as good as constant), singularMatrix (r11), outOfMemory or what the progress does.
[[nodiscard]] ErrorCode findCanonicalVariates(Screens& screens, const Numerics& numerics,
                                              const DataMatrix& data, CanonicalVariates& variates);
