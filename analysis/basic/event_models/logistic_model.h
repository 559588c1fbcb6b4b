#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 30: ln(p / (1 - p)) of a state above the divisional value as a linear function of all other variables,
// by maximum likelihood. Codes: those of takeEventData (analysis/basic/event_models/event_data.h), then those
// of newtonRaphson.
extern const Analysis logisticModel;
