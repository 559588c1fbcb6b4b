#pragma once

#include <string_view>

#include "numeric/moments.h"

// The kernels that a run computes with. The classic ones are those that all reports so far are made of, with
// the errors that their headers state; the textbook ones are exact to rounding. A run chooses one record and
// hands it to its engines, so that their calls have no branches. Functions of one record take the same
// arguments as those of the other, and classic calls give the same bits as the kernels by name.
struct Numerics {
    const char* remark;        // what a report says of it; null for the classic ones
    bool textbook;             // for formulas that belong to one analysis
    double iterationTolerance; // of rotations, principal factors, log-linear fitting; 0: each analysis has
                               // its own

    // Moments of samples x variables values, as MeanCovarianceCorrelation gives them.
    ErrorCode (*moments)(const double* values, std::int32_t samples, std::int32_t variables,
                         MomentMatrices& moments);
    // Whether a variable is as good as constant: by its deviation, or that over its mean.
    bool (*anyConstant)(const MomentMatrices& moments);

    // Upper tails of n values, into out, which may be an input: 1 where a value, or degrees of freedom of
    // chi-square, are not above 0. Both return 0.
    ErrorCode (*fTails)(Index n, const double* f, const double* numerator, const double* denominator,
                        double* out);
    ErrorCode (*chiSquareTails)(Index n, const double* chiSquares, const double* df, double* out);

    // P(|Z| >= |z|) of a normal z, and the z >= 0 whose upper tail is the smaller of p and 1 - p.
    double (*normalTwoSidedTail)(double z);
    double (*normalUpperQuantile)(double p);

    // P(|T| >= |t|) of Student's t, and the t >= 0 for which that is alpha, 0 unless 0 < alpha < 1.
    double (*tTwoSidedTail)(double t, double df);
    double (*tTwoSidedQuantile)(double df, double alpha);

    // The two-sided probability of a rank correlation r with df = N - 2 into out. The tie factor is that of
    // r's denominator; where it is not above 0, r means nothing and out is 0. Returns 0, or the flag 1 of
    // IncompleteBeta.
    ErrorCode (*rankCorrelationTail)(double r, double df, double tieFactor, double& out);
};

extern const Numerics classicNumerics;
extern const Numerics textbookNumerics;

// By the name that a command line has for them, "classic" or "textbook"; null for any other.
const Numerics* findNumerics(std::string_view name);
