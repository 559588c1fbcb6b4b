#pragma once

#include <array>

#include "analysis/run/analysis_kind.h"

// The options that multiple regression and the curve models share, and their rules.

// Fields of a group of options at `group` of AnalysisOptions, and the purpose variable.
std::array<OptionField, 6> regressionFields(std::size_t group);

// The criterion belongs to the stepwise methods, its two limits to the F criterion.
bool isRegressionFieldEnabled(const RegressionOptions& options, const OptionField& field);

// What moments must hold.
unsigned regressionMomentNeeds(const AnalysisOptions& options);

// The alert that refuses the options, or null. The limits are compared for every method and criterion.
const char* refuseRegression(const AnalysisOptions& options, const RegressionOptions& regression);
