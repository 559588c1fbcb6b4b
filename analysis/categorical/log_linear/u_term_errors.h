#pragma once

#include "analysis/categorical/log_linear/log_linear_models.h"
#include "numeric/matrix.h"
#include "report/screens.h"

// Percent of a run when the models are to be fitted, and when all is estimated.
constexpr int modelsBegun = 70;
constexpr int modelsEstimated = 85;

// Standard errors of the u-terms of a fitted model by the delta method (Agresti 2002): the covariance of the
// parameters is inv(X' diag(m) X), X effect-coded and m the expected table. Neither X nor that matrix is
// made.
struct UTermErrors {
    Matrix slices;         // a (b + c) x (b + c): G of each level of A, below
    Matrix information;    // (b - 1)(c - 1) squared: of the BC effects, then its Cholesky factor
    Matrix scratch;        // (b + c) x (b + c)
    Block<double> weights; // (b - 1)(c - 1)
    Block<double> sums;    // b + c
    Block<double> product; // b + c

    // `noInteraction`: the model of all three two-factor terms is among those that errors are asked of, which
    // has no closed form.
    [[nodiscard]] ErrorCode allocate(const ThreeWaySizes& sizes, bool noInteraction);

    // Into result.errors of all terms but the interaction of three: 0 for a term that is not in the model,
    // infinite where an empty margin leaves it without an estimate. `observed` are the margins of the
    // observed table. Returns success, outOfMemory, or a code of setProgress.
    [[nodiscard]] ErrorCode estimate(Screens& screens, const Margins& observed, Index model,
                                     const double* expected, UTermEstimates& result);
};
