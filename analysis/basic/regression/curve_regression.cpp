#include "analysis/basic/regression/curve_regression.h"

#include "analysis/basic/regression/regression_analysis.h"
#include "analysis/basic/regression/regression_options.h"
#include "analysis/run/fit_charts.h"

namespace {

const std::array fields = regressionFields(offsetof(AnalysisOptions, settings.curve));

constexpr int degreesDialog = 1051;
constexpr int firstColumnList = 2201;
constexpr int firstDegreeEdit = 2211;
constexpr int firstDegreeArrows = 2221;

// Ten columns, then the degree of each.
constexpr int firstFieldCount = 1 + AnalysisOptions::slotCount;
std::array<OptionField, firstFieldCount> degreeFields() {
    std::array<OptionField, firstFieldCount> all = {};
    all[0] = {.type = OptionType::variables,
              .offset = offsetof(AnalysisOptions, slotColumns),
              .control = firstColumnList,
              .count = AnalysisOptions::slotCount};
    std::size_t offset = offsetof(AnalysisOptions, slotDegrees);
    int slot = 0;
    for (OptionField& field : std::span(all).subspan(1)) {
        field = {.type = OptionType::real,
                 .offset = offset,
                 .control = firstDegreeEdit + slot,
                 .arrows = firstDegreeArrows + slot,
                 .step = 0.1,
                 .least = 0.1,
                 .most = 99.0};
        offset += sizeof(double);
        ++slot;
    }
    return all;
}

const std::array firstFields = degreeFields();

bool isEnabled(const AnalysisOptions& options, const OptionField& field) {
    return isRegressionFieldEnabled(options.settings.curve, field);
}

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return refuseRegression(options, options.settings.curve);
}

ErrorCode runCurveRegression(Screens& screens, AnalysisRun& run) {
    return runRegression(screens, run, run.options.settings.curve);
}

} // namespace

const Analysis curveRegression = {.fields = fields,
                                  .driver = runCurveRegression,
                                  .isEnabled = isEnabled,
                                  .refuse = refuse,
                                  .momentNeeds = regressionMomentNeeds,
                                  .hasExpressions = true,
                                  .pictures = fitPictures};

const Analysis polynomialRegression = {.fields = fields,
                                       .driver = runCurveRegression,
                                       .isEnabled = isEnabled,
                                       .refuse = refuse,
                                       .momentNeeds = regressionMomentNeeds,
                                       .firstFields = firstFields,
                                       .firstDialog = degreesDialog,
                                       .firstTitle = "convert degrees of polynomial terms",
                                       .hasExpressions = true,
                                       .pictures = fitPictures};
