#pragma once

#include "numeric/moments.h"
#include "report/screens.h"

// What is regressed: samples x variables, row-major, the purpose variable last, with the moments of its
// columns.
struct RegressionData {
    const double* values;
    std::int32_t samples;
    std::int32_t variables;
    const MomentMatrices& moments;

    Index purpose() const { return variables - 1; }
};

// The linear regression of the purpose variable on `count` columns, which stand in `variables`: the engine's
// input, output and scratch. Statistics of variables are in model order.
struct RegressionFit {
    Block<std::int32_t> variables;
    std::int32_t count = 0;

    Block<double> coefficients;
    Block<double> errors;  // standard errors
    Block<double> fValues; // and at index `count` that of the whole model
    Block<double> fProbabilities;
    Block<double> standardized;
    Block<double> partial; // correlations with the purpose variable
    double constant = 0.0;

    static constexpr int determinationCount = 3;
    double determinations[determinationCount] = {}; // R2, adjusted, re-adjusted
    double alpha = 0.0;
    double residualVariance = 0.0;
    Block<double>
        intervalMatrix; // inverse of N times the covariance matrix of the columns; made unless alpha is 0

    Block<double> predictions; // of each sample
    Block<double> halfWidths;  // of the interval around it
    Block<double> standardizedResiduals;

    Block<double> matrix; // scratch
    Block<double> inverse;
    Block<double> freedoms[2];
    Block<double> deviations;

    ErrorCode allocate(std::int32_t samples, std::int32_t allVariables);
};

// Copies the rows and columns named in `variables` from a matrix of `stride` columns to a dense one of count
// x count, times a factor.
void copyMinor(const double* matrix, std::int32_t stride, const std::int32_t* variables, std::int32_t count,
               double factor, double* out);

// The half-width of the prediction interval at a point: t sqrt((1/N + 1 + d' M d) s2) with t from TInverse of
// alpha, which is 0 for an alpha outside 0..1, d the deviations of the model's variables from their means and
// s2 the residual variance.
double intervalHalfWidth(const double* deviations, std::int32_t count, const double* intervalMatrix, double t,
                         std::int32_t samples, double residualVariance);

// Whether a negative determinant of the correlation matrix counts as singular.
enum class DeterminantTest { none, refuseNegative };

// Fits fit.variables through the inverse of the correlation matrix (of the model's variables and the purpose
// variable) and moves the progress from 40 to 100. A matrix that is singular but not seen to be gives values
// that are not finite. Returns success, outOfMemory or singularMatrix.
ErrorCode fitRegression(Screens& screens, const RegressionData& data, double alpha, DeterminantTest test,
                        RegressionFit& fit);
