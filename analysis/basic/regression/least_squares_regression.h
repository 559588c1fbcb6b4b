#pragma once

#include "analysis/basic/regression/regression.h"
#include "numeric/least_squares.h"
#include "numeric/numerics.h"

// The regression of textbook numerics, from residuals instead of correlations.

// The bare regression of the purpose variable on `count` columns. Codes as fitLeastSquares.
[[nodiscard]] ErrorCode fitColumns(const RegressionData& data, const Index* variables, Index count,
                                   LeastSquares& least);

// Fits fit.variables and moves the progress from 40 to 100. Standard errors come from the factored columns,
// determinations from the residuals, and adjusted ones may be negative. Without degrees of freedom the tests
// are not numbers. Returns success, outOfMemory, singularMatrix as fitLeastSquares, or a code of the
// progress.
[[nodiscard]] ErrorCode fitByLeastSquares(Screens& screens, const Numerics& numerics,
                                          const RegressionData& data, double alpha, RegressionFit& fit);
