#pragma once

#include "numeric/block.h"

// A statistic deviates from a textbook's when it does so by more than this share of the textbook's value, or
// of 1 where that is smaller: what the last of six decimals shows.
constexpr double shownDeviation = 1e-6;

// False where one of the two is not a number.
bool deviates(double value, double textbook);

// Whether one of the first count values does.
bool anyDeviates(const Block<double>& values, const Block<double>& textbook, Index count);
