#pragma once

#include "analysis/run/analysis_kind.h"

// Kind 32: the proportional hazard model (Cox 1972) of right-censored times with all other variables, ties by
// Breslow's likelihood (1974), and its baseline survival. The graph shows the survival. Codes: those of
// takeEventData (analysis/basic/event_models/event_data.h), then those of newtonRaphson; outOfMemory or
// graphNotBuilt of the graph.
extern const Analysis hazardModel;
