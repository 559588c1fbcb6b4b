#pragma once

#include <cstdint>

#include "numeric/matrix.h"

// What is regressed on what: columns of a samples x stride block.
struct RegressionColumns {
    const double* values = nullptr;
    Index samples = 0;
    Index stride = 0;
    const std::int32_t* variables = nullptr; // the k explanatory columns
    Index k = 0;
    Index purpose = 0;

    // The first item of an explanatory column, or, for c = k, of the purpose column.
    const double* column(Index c) const { return values + (c < k ? variables[c] : purpose); }
};

// The linear regression with a constant, as fitLeastSquares leaves it. With the residual variance s2 =
// residualSum / (samples - k - 1), the square of a standard error is inverse(j, j) s2, R2 is 1 - residualSum
// / totalSum, and inverse is the matrix of prediction intervals.
struct LeastSquares {
    Block<double> coefficients; // k, in the order of the variables
    double constant = 0.0;
    Matrix inverse;           // k x k, of the sums of products of the variables about their means
    Matrix root;              // k x k, with inverse = root' root: d' inverse d keeps more digits as the
                              // squared length of root d
    Block<double> residuals;  // of each sample
    double residualSum = 0.0; // of their squares
    double totalSum = 0.0;    // of the squares of the purpose column about its mean
};

// Fits by least squares: a Householder factoring with column pivoting (Businger and Golub 1965) of the
// columns about their means, scaled to length 1, and two corrections from residuals in wide sums, which win
// back what nearly dependent columns cost. Some 3 N k^2 operations. Returns success, outOfMemory, or
// singularMatrix where samples <= k, a column does not vary or is not finite, or less is left of it beside
// the others than 1e-11 of its length or than its own rounding may be; fit is undefined then. Correct digits
// of the coefficients and of their standard errors: at least 12 and 12 for the sets Norris, Pontius and
// Longley of NIST, 7 and 7 for Filip, whose powers are rounded, and 10 and 13 for Wampler1 to Wampler5.
[[nodiscard]] ErrorCode fitLeastSquares(const RegressionColumns& from, LeastSquares& fit);
