#include "analysis/basic/regression/multiple_regression.h"

#include "analysis/basic/regression/regression_analysis.h"
#include "analysis/basic/regression/regression_options.h"
#include "analysis/run/fit_charts.h"

namespace {

const std::array fields = regressionFields(offsetof(AnalysisOptions, settings.regression));

bool isEnabled(const AnalysisOptions& options, const OptionField& field) {
    return isRegressionFieldEnabled(options.settings.regression, field);
}

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return refuseRegression(options, options.settings.regression);
}

ErrorCode runMultipleRegression(Screens& screens, AnalysisRun& run) {
    return runRegression(screens, run, run.options.settings.regression);
}

} // namespace

const Analysis multipleRegression = {.fields = fields,
                                     .driver = runMultipleRegression,
                                     .isEnabled = isEnabled,
                                     .refuse = refuse,
                                     .momentNeeds = regressionMomentNeeds,
                                     .hasExpressions = true,
                                     .pictures = fitPictures};
