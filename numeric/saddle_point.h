#pragma once

#include <cmath>

// What the incomplete beta and gamma functions share. Their integrands fall off from a maximum, and
// everything here is measured from it, so that nothing large cancels however large the parameters are (Loader
// 2000).

// t - ln(1 + t) for t > -1, to a few units of the last place; both t and 1 + t are to be exact to rounding.
template <class Real> Real deviance(Real t, Real onePlus) {
    if (std::fabs(t) > Real(0.4)) return t - std::log(onePlus);
    const Real s = t / (2 + t); // ln(1 + t) = 2 artanh s
    const Real s2 = s * s;
    Real sum = 0;
    for (int k = sizeof(Real) > sizeof(double) ? 31 : 25; k >= 3; k -= 2) sum = sum * s2 + 1 / Real(k);
    return s * t - 2 * s * s2 * sum;
}

// Stirling's series: ln Gamma(a + 1) less (a + 1/2) ln a - a + ln(2 pi) / 2, to 2e-16 for a >= stirlingFrom.
constexpr double stirlingFrom = 15.0;
double stirlingError(double a);

// Gamma(a + 1) over Stirling's sqrt(2 pi a) (a / e)^a, for a > 0.
double stirlingFactor(double a);

// A tail of the density with the logarithm a ln(1 + d t) + b ln(1 - d r t), of t >= 0, over its value at 0:
// the integral of exp(-slope t - a dev(d t) - b dev(-d r t)) / ((1 + d t) (1 - d r t)) by 32 points of Gauss
// and Legendre. d is 1 or -1, r >= 0, and slope = d (b r - a) >= 0 how fast it falls at the start (for the
// gamma function b r is the argument, and b and r are 0 here). a and, unless it is 0, b must be at least
// integrableFrom: below, the tail is too unlike that of a normal distribution.
constexpr double integrableFrom = 500.0;
double tailIntegral(double slope, double a, double d, double b, double r);
