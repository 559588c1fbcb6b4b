#pragma once

#include <span>

#include "analysis/basic/event_models/event_data.h"
#include "analysis/run/analysis_run.h"

// What the reports of the logistic and the survival models have in common. Their columns are 18 wide with 12
// decimals.
constexpr int eventColumnWidth = 18;
constexpr int eventDecimals = 12;

// Coefficients on the scale of the data, with the constant last where there is one.
struct EventCoefficients {
    Block<double> values;
    Block<double> errors;

    ErrorCode allocate(Index count) { return values.allocate(count) | errors.allocate(count); }
};

// The title and the beginning of the option line, up to the number of iterations; formats and status, too.
void writeEventStart(AnalysisRun& run, const char* title, const EventColumns& columns);

void writeEventHeader(Report& report, std::span<const char* const> names);
void writeEventValue(Report& report, double value);
void writeEventCount(Report& report, double value); // a whole number

// A row for each covariate, then one numbered 0 for the constant. Wald's test; with `ratio` also
// exp(coefficient) under that name.
void writeCoefficients(Report& report, const DataSet& data, const EventData& events,
                       const EventCoefficients& coefficients, const char* ratio);

// A table of log-likelihoods and AIC: the heading and the row of one model.
void writeLikelihoodHeader(Report& report);
void writeLikelihoodRow(Report& report, int number, const char* label, double likelihood, Index parameters);

// The test of all covariates together, from both log-likelihoods.
void writeLikelihoodRatio(Report& report, double null, double fitted, Index covariates);
