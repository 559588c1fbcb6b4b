#pragma once

#include "numeric/block.h"

// Tail probabilities and quantiles of classic numerics; those of textbook numerics stand in
// normal_distribution.h, chi_square_distribution.h and f_distribution.h. Errors are absolute where nothing
// else is said, and measured against exact values. Every function takes any double: what is not a number
// comes out as such, and nothing loops for long.

// erfc(x) for any x, with a relative error up to 1.1e-7 for x >= 0 (Press et al. 1986, a rational fit).
// erfc(|z| / sqrt 2) is the two-sided probability of a normal z.
double ComplementaryErrorFunction(double x);

// Upper tails of n values of F, each with its degrees of freedom > 0, into out (which may be an input): 1 for
// an F not above 0, and 0 for a tail below 1e-12. Within 8e-9 for up to 1,500 degrees of freedom each. The
// series stops after 999 terms, so that with 2,000 and more a tail that should vanish can come out as
// anything up to 1 (seen from F = 33 on for up to 50 numerator degrees): kept so that reports stay
// comparable. Returns 0.
ErrorCode FUpperProbability(Index n, const double* f, const double* numerator, const double* denominator,
                            double* out);

// The z >= 0 whose upper normal tail is the smaller of p and 1 - p, 0 < p < 1 (a polynomial of the kind of
// Toda 1967). Below the exact value by 3e-6 at p = 0.2, 0.0009 at 0.05, 0.004 at 0.025, 0.014 at 0.01 and
// 0.12 at 0.001, and not a number below 2.6e-7: kept so that reports stay comparable.
double NormalUpperQuantile(double p);

// P(|T| >= |t|) of Student's t with df > 0 whole degrees of freedom. Within 3e-14 for df up to 2,000, 2e-11
// up to 1e6, and 5e-13 above. A rounding error beyond -1e-11 is returned as it is.
double TTwoSidedProbability(double t, double df);

// The t with TTwoSidedProbability(t, df) = alpha; 0 unless 0 < alpha < 1. Relative error up to 1e-10 for df
// up to 200 and alpha from 1e-6 to 0.98. Where t would pass 1e31 an expansion takes over that holds for large
// df only.
double TInverse(double df, double alpha);

// Upper tails of n chi-square values, each with its whole degrees of freedom, into out (which may be an
// input); 1 where the value is not above 0 or the degrees are below 1. With values and degrees up to 100 it
// is within 3e-7 for 1, 2 and 3 degrees; 4 and more lack a term of the series, and are too small by up to
// 0.37 (4 degrees), 0.31 (5), 0.57 (10) and 0.97 (100). Beyond 100 as ChiSquareSeries. Returns 0.
// This is the tail of components, canonical correlation, discriminant analysis and quantification 3, kept so
// that their reports stay comparable. The event models, and whatever is new, take the exact
// ChiSquareUpperTail of numeric/incomplete_gamma.h.
ErrorCode ChiSquareUpperProbability(Index n, const double* chiSquares, const double* df, double* out);

// The upper tail of a chi-square x with df degrees of freedom into out (1 unless both are above 0), by the
// series of the incomplete gamma function until a term is no more than tolerance. With 1e-10 and one of the
// two beyond 100: within 2e-11 for df up to 10,000, 2e-9 up to 1e6, 2e-6 up to 1e9, and 2e-9 above. With x
// and an odd df that are both small the series ends early, and out is off by up to 0.17 (df = 1).
void ChiSquareSeries(double& out, double x, double df, double tolerance);
