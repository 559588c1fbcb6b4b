#pragma once

#include "numeric/error_code.h"

// Both take any double and let what is not a number through.

// ln Gamma(x) into value, for the whole and half-whole x > 0 of the F and chi-square distributions: a sum of
// logarithms below 10, exact to 1e-15; Stirling's series from there, 8e-9 too small at 10, 3e-10 at 20, and
// rounding from 50 on. Any other x below 10 gets the value of the half-whole number under it, and whole
// numbers below 1 get 0: kept so that reports stay comparable. Returns 0.
ErrorCode LogGamma(double x, double& value);

// ln Gamma(x) for x > 0 (Lanczos 1964, g = 5 and six terms). Within 2e-11 for x up to 20, 3e-10 up to 10,000.
double LogGammaLanczos(double x);
