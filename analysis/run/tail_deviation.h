#pragma once

#include "numeric/block.h"

// Whether statistics that a report prints are away from a textbook's by more than a reader should pass over:
// 1e-6 and not the last digits of an approximation.
bool deviates(double printed, double textbook);

// The same for any of n printed upper tails of chi-square, or of F.
bool chiSquareTailsDeviate(Index n, const double* chiSquares, const double* df, const double* printed);
bool fTailsDeviate(Index n, const double* f, const double* numerator, const double* denominator,
                   const double* printed);
