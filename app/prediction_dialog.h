#pragma once

#include "analysis/basic/regression/prediction.h"
#include "app/program.h"

// Lets the user enter the values of one page, from 0.
PredictionStep showPredictionDialog(const Program& program, PredictionEntry& entry, int page);
