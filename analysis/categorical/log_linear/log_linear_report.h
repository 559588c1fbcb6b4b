#pragma once

#include "analysis/categorical/log_linear/log_linear_models.h"
#include "report/report.h"

// One of the two models that are reported in detail.
struct SelectedLogLinearModel {
    Index model;            // list index
    Block<double> expected; // cells
    UTermEstimates terms;   // without the three-factor term
};

// What the analysis finds.
struct LogLinearResult {
    ThreeWaySizes sizes = {};
    Block<std::int32_t> observed; // cells
    UTermEstimates saturated;
    SelectedLogLinearModel selected[2]; // the smaller model first
    Index freedom[logLinearModelCount];
    double chiSquares[logLinearModelCount];
    double aic[logLinearModelCount];
    double ranking[logLinearModelCount]; // list indices by AIC

    [[nodiscard]] ErrorCode allocate(const ThreeWaySizes& tableSizes);
};

// Appends all tables, in the formats that are set.
void writeLogLinearTables(Report& report, const LogLinearResult& result);
