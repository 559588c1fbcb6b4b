#pragma once

#include "analysis/basic/regression/regression_options.h"
#include "analysis/run/fit_charts.h"

// What multiple regression and the curve models are made of.

// Runs the model of run.kind: transforms the variables, selects among them, fits, keeps the model for
// prediction, writes the report and builds the graph. Codes in order: invalidDegree, noEffectiveVariable,
// invalidInvolutionVariable, invalidPurposeVariable, outOfMemory, notFinite (a value or moment), illegalData
// (a deviation below 0.001 in the data or none after the transformation), singularMatrix; noEffectiveVariable
// again when no variable is selected; graphNotBuilt.
[[nodiscard]] ErrorCode runRegression(Screens& screens, AnalysisRun& run, const RegressionOptions& options);

// The analysis whose options are this group of the settings, and have these fields.
template <RegressionOptions Settings::*group> Analysis regressionAnalysis(OptionFields fields) {
    Analysis analysis = {};
    analysis.fields = fields;
    analysis.driver = [](Screens& screens, AnalysisRun& run) {
        return runRegression(screens, run, run.options.settings.*group);
    };
    analysis.isEnabled = [](const AnalysisOptions& options, const OptionField& field) {
        return isRegressionFieldEnabled(options.settings.*group, field);
    };
    analysis.refuse = [](const AnalysisOptions& options, std::uint32_t) {
        return refuseRegression(options, options.settings.*group);
    };
    analysis.momentNeeds = regressionMomentNeeds;
    analysis.hasExpressions = true;
    analysis.pictures = fitPictures;
    return analysis;
}
