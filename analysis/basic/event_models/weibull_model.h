#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 31: survival exp(-(t / s)^k) of right-censored times, ln s a linear function of all other variables:
// the exponential model (k = 1) and Weibull's, by maximum likelihood. Codes: those of takeEventData
// (analysis/basic/event_models/event_data.h), then those of newtonRaphson for one model and for the other.
extern const Analysis weibullModel;
