#pragma once

#include "numeric/block.h"

// What a prediction is asked for: a value of each working variable but the purpose variable, and the alpha of
// the interval.
struct PredictionEntry {
    double alpha = 0.0;
    Block<double> values;
};

// How a page of the entry was left.
enum class PredictionStep { next, back, cancelled };
