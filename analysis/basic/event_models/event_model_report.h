#pragma once

#include <initializer_list>

#include "analysis/basic/event_models/event_data.h"
#include "analysis/run/analysis_run.h"

// What the reports of the logistic and the survival models have in common.

// Coefficients on the scale of the data, with the constant last where there is one.
struct EventCoefficients {
    Block<double> values;
    Block<double> errors;

    [[nodiscard]] ErrorCode allocate(Index count) { return values.allocate(count) | errors.allocate(count); }
};

// Opens the report. Its option line names the columns and the divisional value, and tells how many iterations
// each fit took.
void openEventReport(AnalysisRun& run, const char* title, const EventColumns& columns,
                     std::initializer_list<Index> iterations);

// A row for each covariate, then one numbered 0 for the constant. Wald's test; with `ratio` also
// exp(coefficient) under that name.
void writeCoefficients(Report& report, const DataMatrix& data, const EventData& events,
                       const EventCoefficients& coefficients, const char* ratio);

// A table of log-likelihoods and AIC: the heading and the row of one model.
void writeLikelihoodHeader(Report& report);
void writeLikelihoodRow(Report& report, Index number, const char* label, double likelihood, Index parameters);

// The test of all covariates together, from both log-likelihoods.
void writeLikelihoodRatio(Report& report, double null, double fitted, Index covariates);
