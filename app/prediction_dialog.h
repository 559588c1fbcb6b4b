#pragma once

#include "analysis/basic/regression/prediction.h"
#include "app/program.h"

// Lets the user enter the values of one page, from 0. True: go on; false: cancelled.
bool showPredictionDialog(const Program& program, PredictionEntry& entry, int page);
