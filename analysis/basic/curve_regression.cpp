#include "analysis/basic/curve_regression.h"

#include "analysis/basic/regression_analysis.h"

namespace {

const std::array fields = regressionFields(offsetof(AnalysisOptions, settings.curve));

constexpr int degreesDialog = 1051;
constexpr int firstColumnList = 2201;
constexpr int firstDegreeEdit = 2211;
constexpr int firstDegreeArrows = 2221;

// Ten columns and the degree of each.
std::array<OptionField, 1 + AnalysisOptions::slotCount> degreeFields() {
    std::array<OptionField, 1 + AnalysisOptions::slotCount> result = {};
    result[0] = {.type = OptionType::variables,
                 .offset = offsetof(AnalysisOptions, slotColumns),
                 .control = firstColumnList,
                 .count = AnalysisOptions::slotCount};
    for (int slot = 0; slot < AnalysisOptions::slotCount; ++slot) {
        const std::size_t offset = static_cast<std::size_t>(slot) * sizeof(double);
        result[static_cast<std::size_t>(slot) + 1] = {.type = OptionType::real,
                                                      .offset =
                                                          offsetof(AnalysisOptions, slotDegrees) + offset,
                                                      .control = firstDegreeEdit + slot,
                                                      .arrows = firstDegreeArrows + slot,
                                                      .step = 0.1,
                                                      .least = 0.1,
                                                      .most = 99.0};
    }
    return result;
}

const std::array firstFields = degreeFields();

bool isEnabled(const AnalysisOptions& options, const OptionField& field) {
    return isRegressionFieldEnabled(options.settings.curve, field);
}

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return refuseRegression(options, options.settings.curve);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    return runRegression(screens, run, run.options.settings.curve);
}

} // namespace

const Analysis curveRegression = {.fields = fields, .driver = run, .isEnabled = isEnabled, .refuse = refuse};

const Analysis polynomialRegression = {.fields = fields,
                                       .driver = run,
                                       .isEnabled = isEnabled,
                                       .refuse = refuse,
                                       .firstFields = firstFields,
                                       .firstDialog = degreesDialog,
                                       .firstTitle = "convert degrees of polynomial terms"};
