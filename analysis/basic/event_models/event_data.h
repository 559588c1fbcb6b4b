#pragma once

#include "data/data_set.h"
#include "numeric/matrix.h"

// Where a model of an event finds what it explains: columns count from 1, time 0 for a model without one. A
// sample has the event when its state is above the division.
struct EventColumns {
    std::int32_t state;
    std::int32_t time;
    double division;
};

// The samples of such a model. All columns but the state and the time are covariates.
struct EventData {
    EventColumns columns = {};
    Index samples = 0;
    Index covariates = 0;
    Index events = 0;
    Block<Index> covariateColumns; // of the working part, from 0
    Block<std::int32_t> states;    // samples: 1 with the event, 0 without
    Block<double> times;           // samples, or none
    Block<double> means;           // covariates
    Block<double> deviations;      // covariates, divisor N
    Matrix design; // samples x parameters: the standardized covariates, then what a model adds (zeros)
};

// Takes the samples over. `added` counts the other parameters of the model, each of which has a column in the
// design. Returns, in this order: noEffectiveVariable without a covariate, tooFewSamples for fewer than
// parameters + 1, illegalDivisionalValue when nobody has the event (and without a time when everybody has),
// for a time not above 0 invalidPurposeVariable, notFinite, outOfMemory, for a deviation below 0.001
// illegalData.
[[nodiscard]] ErrorCode takeEventData(const DataMatrix& data, const EventColumns& columns, Index added,
                                      EventData& events);
