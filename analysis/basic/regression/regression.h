#pragma once

#include "numeric/moments.h"
#include "report/screens.h"

// What is regressed: samples x variables, row-major, the purpose variable last, with the moments of its
// columns. Where the samples are not here, rows with their sums of products about the means stand in for
// them.
struct RegressionData {
    const double* values;
    std::int32_t samples;
    std::int32_t variables;
    const MomentMatrices& moments;
    Index standIns = 0; // rows in the place of the samples; 0: the samples are here

    Index purpose() const { return variables - 1; }
    Index rows() const { return standIns > 0 ? standIns : samples; }
    // Degrees of freedom of the residuals of a model with so many variables.
    double freedom(Index modelVariables) const { return static_cast<double>(samples - modelVariables - 1); }
    // Samples that have a prediction.
    Index predicted() const { return standIns > 0 ? 0 : samples; }
    const double* row(Index sample) const { return values + sample * variables; }
};

// The linear regression of the purpose variable on `count` columns, k in the sizes below: the engine's input,
// output and scratch. Statistics of variables are in model order.
struct RegressionFit {
    Index count = 0;
    Block<Index> variables; // k columns, then that of the purpose variable

    Block<double> coefficients;   // k
    Block<double> errors;         // k: standard errors
    Block<double> fValues;        // k, then that of the whole model
    Block<double> fProbabilities; // k + 1
    Block<double> standardized;   // k: coefficients
    Block<double> partial;        // k: correlations with the purpose variable
    double constant = 0.0;

    static constexpr int determinationCount = 3;
    double determinations[determinationCount] = {}; // R2, adjusted, re-adjusted
    double alpha = 0.0;
    double residualVariance = 0.0;
    Matrix intervalMatrix; // k x k: inverse of N times the covariance matrix; made unless alpha is 0
    bool hasRoot = false;  // intervalMatrix is a root of that instead, always made: its transpose times
                           // itself is the inverse

    Block<double> predictions; // of each sample
    Block<double> halfWidths;  // of the interval around it
    Block<double> standardizedResiduals;

    Matrix correlation; // (k + 1) x (k + 1), of the model's variables and the purpose variable; scratch
    Matrix inverse;     // of the correlations
    Matrix products;    // k x k: N times the covariance matrix; scratch
    Block<double> freedoms[2];
    Block<double> deviations;

    // Zero-filled arrays for a model of modelCount variables; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index samples, Index modelCount);
};

// Copies the rows and columns named in `variables` (count) of a square matrix, times a factor, to count x
// count elements of out, whose rows begin `stride` apart.
void copyMinor(const Matrix& matrix, const Index* variables, Index count, double factor, double* out,
               Index stride);

// The distance d' M d of a point with the deviations d of the model's variables (count) from their means: by
// the interval matrix M (count x count), or by its root.
double distanceByInverse(const double* deviations, Index count, const double* inverse);
double distanceByRoot(const double* deviations, Index count, const double* root);

// The half-width of the prediction interval at a point of that distance: t sqrt((1/N + 1 + distance) s2) with
// Student's t of alpha, which is 0 for an alpha outside 0..1, and s2 the residual variance.
double intervalHalfWidth(double distance, double t, std::int32_t samples, double residualVariance);

// Whether a negative determinant of the correlation matrix counts as singular.
enum class DeterminantTest { none, refuseNegative };

// Fits fit.variables through the inverse of the correlation matrix (of the model's variables and the purpose
// variable), with the classic kernels, and moves the progress from 40 to 100. A matrix that is singular but
// not seen to be gives values that are not finite. Returns success, outOfMemory, singularMatrix or a code of
// the progress.
[[nodiscard]] ErrorCode fitByCorrelations(Screens& screens, const RegressionData& data, double alpha,
                                          DeterminantTest test, RegressionFit& fit);
