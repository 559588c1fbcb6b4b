#pragma once

#include "analysis/multivariate/factor/factor_extraction.h"
#include "report/screens.h"

// Maximum likelihood factors (Lawley 1940) of the p x p correlation matrix R. With uniquenesses s, the mu and
// v are the eigenvalues (descending) and eigenvectors of I - R^(-1/2) diag(s) R^(-1/2), gamma = 1 - mu and
// w = R^(-1/2) v. For the best loadings of m factors, what remains to be minimised is the sum over the
// eigenvalues behind the first m of ln gamma + 1 / gamma - 1 (Joreskog 1967).

// A choice of uniquenesses with what follows from it.
struct UniquenessPoint {
    Block<double> uniqueness; // p, s
    Block<double> values;     // p, mu
    Matrix vectors;           // p x p, v in columns
    double discrepancy = 0.0; // the sum to be minimised

    [[nodiscard]] ErrorCode allocate(Index p);
};

struct LikelihoodWork {
    Index factors = 0;  // m
    Matrix inverseRoot; // p x p, R^(-1/2)
    UniquenessPoint current, trial;
    Matrix w;                     // p x p, in columns
    Block<double> weights;        // p
    Matrix first, second;         // p x p
    Matrix hessian, inverse;      // p x p
    Block<double> gradient, step; // p, for ln s
    Matrix matrix;                // p x p

    [[nodiscard]] ErrorCode allocate(Index p);
};

// Chooses the first uniquenesses, (1 - m / 2p) (1 - communality), or half of the factor's place where no
// communality was estimated, and takes the inverse root of R. Returns success, outOfMemory, or
// singularFactorMatrix when m factors leave no degree of freedom or a first uniqueness is not above 0.
[[nodiscard]] ErrorCode startLikelihood(const Matrix& correlation, bool estimated, const FactorModel& model,
                                        LikelihoodWork& work);

// Newton's method on ln s from there, 50 rounds at most, until no uniqueness moves by 1e-5, or by textbook
// numerics 500 at most until no derivative is 1e-12; then the communalities and loadings. Returns success,
// outOfMemory, or singularFactorMatrix when the iteration diverges.
[[nodiscard]] ErrorCode fitLikelihood(const Numerics& numerics, const Matrix& correlation,
                                      LikelihoodWork& work, FactorModel& model, const Stage& stage = {});
