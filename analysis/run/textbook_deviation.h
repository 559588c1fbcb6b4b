#pragma once

#include "numeric/block.h"

// A statistic deviates from a textbook's when it does so by more than this share of the textbook's value, or
// of 1 where that is smaller: what the last of six decimals shows.
constexpr double shownDeviation = 1e-6;

// What is not a number or infinite deviates from anything but itself.
bool deviates(double value, double textbook);

// Whether one of the first count values does.
bool anyDeviates(const Block<double>& values, const Block<double>& textbook, Index count);

// Whether any of n printed upper tails of chi-square, or of F, does.
bool chiSquareTailsDeviate(Index n, const double* chiSquares, const double* df, const double* printed);
bool fTailsDeviate(Index n, const double* f, const double* numerator, const double* denominator,
                   const double* printed);
