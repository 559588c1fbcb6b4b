#pragma once

#include "data/data_set.h"
#include "numeric/moments.h"
#include "report/screens.h"

// Pairs of linear combinations, one of q1 explanatory variables and one of q2 purpose variables, with the
// highest possible correlations: m = min(q1, q2) pairs. All matrices are row-major.
struct CanonicalVariates {
    int q1 = 0;
    int q2 = 0;
    int pairs = 0; // m
    MomentMatrices moments;
    Block<double> r11;                  // q1 x q1: correlations among the explanatory variables
    Block<double> r22;                  // q2 x q2
    Block<double> r12;                  // q1 x q2
    Block<double> inverse;              // of r11
    Block<double> regression;           // q1 x q2: r11^-1 r12
    Block<double> explained;            // q2 x q2: r12' r11^-1 r12, then whitened
    Block<double> whitening;            // q2 x q2
    Block<double> vectors;              // q2 x q2
    Block<double> scratch;              // the larger of q1 x q1 and q2 x q2
    Block<double> squares;              // q2: squared canonical correlations, descending; m are of use
    Block<double> correlations;         // m
    Block<double> explanatoryWeights;   // q1 x m, for standardized variables; each variate has variance 1
    Block<double> purposeWeights;       // q2 x m
    Block<double> explanatoryStructure; // q1 x m: correlations of the variables with their variates
    Block<double> purposeStructure;     // q2 x m
    Block<double> redundancy;           // 2 x (m + 1): explanatory, purpose; the last column is the total
    // Of all pairs; no report shows them.
    double meanSquare = 0.0;        // of the canonical correlations
    double generalisedSquare = 0.0; // 1 - product of 1 - square
    double harmonicSquare = 0.0;    // 1 - harmonic mean of 1 - square
    Block<double> wilks;            // m
    Block<double> chiSquare;
    Block<double> chiProbability;
    Block<double> freedom;
    double raoF = 0.0;
    double raoProbability = 1.0;
    double raoFreedom1 = 0.0;
    double raoFreedom2 = 0.0;

    // Zero-filled arrays for both groups, none of them empty; success or outOfMemory.
    ErrorCode allocate(int explanatory, int purpose);
};

// Fills the allocated record from data, whose first q1 columns are the explanatory variables and the next q2
// the purpose variables, and moves the progress to 100. Returns success, illegalData (a standard deviation
// below 0.001), singularMatrix (r11) or outOfMemory.
ErrorCode findCanonicalVariates(Screens& screens, const DataMatrix& data, CanonicalVariates& variates);
