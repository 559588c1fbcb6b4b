#pragma once

// Tails of F and of what follows it, for any degrees of freedom > 0, whole or not. Relative errors of tails
// are up to 4e-15 down to 1e-300 (2e-13 where long double is no wider than double). What is not a number, and
// degrees of freedom not above 0, give not a number; degrees beyond 2e25 count as these.

// P(F >= f); 1 for f <= 0, 0 where f is infinite.
double fTail(double f, double numerator, double denominator);

// P(|T| >= |t|) of Student's t.
double tTwoSidedTail(double t, double df);

// The t >= 0 with tTwoSidedTail(t, df) = alpha; 0 for alpha outside 0..1. Relative error up to 1e-14, but
// no less than 2e-16 / (1 - alpha).
double tTwoSidedQuantile(double df, double alpha);

// P(|R| >= |r|) of a rank correlation r with df = N - 2, from Student's t; 0 for |r| = 1 and, for what
// rounding does to it, beyond.
double rankCorrelationTail(double r, double df);
