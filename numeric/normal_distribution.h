#pragma once

// P(|Z| >= |z|) of a normal z. Relative error up to 1e-15 down to 1e-300 (2e-13 where long double is no wider
// than double).
double normalTwoSidedTail(double z);

// The z >= 0 whose upper tail is the smaller of p and 1 - p: infinite for p = 0 and 1, not a number outside
// (Wichura 1988, algorithm AS 241). Relative error up to 1e-15.
double normalUpperQuantile(double p);
