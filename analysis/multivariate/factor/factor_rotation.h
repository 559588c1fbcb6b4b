#pragma once

#include "numeric/matrix.h"
#include "numeric/numerics.h"
#include "report/screens.h"

// Rotations of a p x factors loading matrix to simple structure; gamma is the weight of the column sums in
// the criterion: 1 for varimax and covarimin, 0.5 for biquartimax and biquartimin, 0 for quartimax and
// quartimin.

// Turns the columns of the loadings in place, two at a time, so that the sum over the factors of
// sum l^4 - gamma / p (sum l^2)^2 is greatest (Kaiser 1958; Harman 1976), until no sine of a sweep has a
// square of 1e-5, or by textbook numerics none is 1e-12. Returns success, outOfMemory or the code of the
// stage.
[[nodiscard]] ErrorCode rotateOrthogonal(const Numerics& numerics, double gamma, Matrix& loadings,
                                         const Stage& stage = {});

// The largest sine by which one more sweep would turn a pair of columns.
double largestTurnLeft(double gamma, const Matrix& loadings);

// Of reference axes, or of the primary factors that findPrimaryFactors makes of them.
struct ObliqueRotation {
    Matrix structure;    // p x factors: the projections on the axes
    Matrix correlations; // factors x factors: the inner products of the axes
    Matrix pattern;      // p x factors: structure times the inverse of the correlations

    // Zero-filled matrices; returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index p, Index factors);
};

// Finds reference axes one after the other so that the sum over the pairs of factors of
// sum v_k^2 v_l^2 - gamma / p sum v_k^2 sum v_l^2 of the projections v is least (Carroll 1953), until no
// element of an axis moves by 1e-5, or the tolerance of the numerics. A new axis points to the side of the
// one it replaces. Fills structure and correlations of a rotation that is allocated for the loadings; sets
// the progress, from 40 to 60, after each round. Returns success, outOfMemory, singularMatrix when two axes
// fell together, or the code of the progress.
[[nodiscard]] ErrorCode rotateOblique(Screens& screens, const Numerics& numerics, double gamma,
                                      const Matrix& loadings, ObliqueRotation& rotation);

// Fills the pattern. Returns success, outOfMemory, or singularMatrix when axes nearly depend on each other.
[[nodiscard]] ErrorCode findPattern(ObliqueRotation& rotation);

// Replaces the reference axes of rotateOblique by the primary factors (Thurstone 1947; Harman 1976). With D
// the diagonal that gives D Phi^-1 D, Phi the inner products of the axes and V the projections on them, ones
// on its diagonal: correlations D Phi^-1 D, pattern V D^-1, structure pattern times correlations. Codes as
// findPattern.
[[nodiscard]] ErrorCode findPrimaryFactors(ObliqueRotation& rotation);
