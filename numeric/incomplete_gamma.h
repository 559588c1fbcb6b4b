#pragma once

// Q(a, x), the upper incomplete gamma function over the complete one, for a > 0; 1 where x is not above 0, 0
// where it is infinite. Relative error up to 2e-13 for a up to 5,000 where the value is a normal double;
// grows with a beyond. What is not a number, and a not above 0, gives not a number.
double UpperGammaRatio(double a, double x);

// The upper tail of a chi-square with df > 0 degrees of freedom: Q(df / 2, chiSquare / 2), as accurate as
// that far into the tail. The logistic, Weibull and hazard models take it, and whatever is new. Four
// multivariate analyses keep the shortened series of ChiSquareUpperProbability (numeric/distributions.h) so
// that their reports stay comparable.
double ChiSquareUpperTail(double chiSquare, double df);

// The expansions that both are made of, for x up to and from a + 1 on: P(a, x) Gamma(a + 1) e^x / x^a as a
// series, and Q(a, x) Gamma(a) e^x / x^a as Legendre's continued fraction, from the front (Lentz 1976).
double lowerGammaSeries(double a, double x);
double upperGammaFraction(double a, double x);
