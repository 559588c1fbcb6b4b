#pragma once

#include "numeric/matrix.h"
#include "report/screens.h"

// The log-likelihood of some parameters and its derivatives.
struct LikelihoodPoint {
    double value = 0.0;
    Block<double> gradient; // count
    Matrix information;     // count x count, less the second derivatives; the lower triangle counts

    [[nodiscard]] ErrorCode allocate(Index count);
    void clear();
    // Adds what one sample gives whose linear predictor is row * parameters: the first derivative by the
    // predictor, less the second one.
    void add(const double* row, double first, double second);
};

class LikelihoodModel {
public:
    virtual ~LikelihoodModel() = default;
    // Fills a point. A value that is not finite says that there is no such model.
    virtual void evaluate(const double* parameters, LikelihoodPoint& point) = 0;
};

struct NewtonRaphsonFit {
    Block<double> parameters; // starting values, then those of the maximum
    Matrix covariance;        // count x count: the inverse of the information
    double startLikelihood = 0.0;
    double likelihood = 0.0;
    Index iterations = 0; // updates taken

    LikelihoodPoint point;
    Block<double> start;  // count: the variances at the start
    Block<double> trial;  // count: parameters
    Block<double> step;   // count
    Block<double> scales; // count: the roots of the information's diagonal
    Matrix scaled;        // count x count: the information with a unit diagonal
    Matrix inverse;       // count x count: of that

    [[nodiscard]] ErrorCode allocate(Index count);
    // Of the sum of the parameters with these weights (count).
    double standardError(const double* weights) const;
};

// Maximises a log-likelihood by Newton's steps, halved while they lower it. It is at its maximum when no
// parameter changes by more than 1e-8 (1 + its size). The first `slopes` parameters are watched: one whose
// variance exceeds 1e8 times that of the start is running away to infinity. Returns success,
// newtonRaphsonSingular for an information that is singular at the start, newtonRaphsonNotConvergent for one
// that becomes so, a parameter that runs away or `limit` updates without an end, notFinite for a likelihood
// that no step makes finite, outOfMemory.
[[nodiscard]] ErrorCode newtonRaphson(LikelihoodModel& model, Index slopes, Index limit,
                                      NewtonRaphsonFit& fit, const Stage& stage = {});
