#include "analysis/basic/regression/curve_regression.h"

#include "analysis/basic/regression/regression_analysis.h"

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

// The same analysis, with the dialog of the degrees before its own.
Analysis askingDegrees(Analysis analysis) {
    analysis.firstFields = firstFields;
    analysis.firstDialog = degreesDialog;
    analysis.firstTitle = "convert degrees of polynomial terms";
    return analysis;
}

} // namespace

const Analysis curveRegression = regressionAnalysis<&Settings::curve>(fields);

const Analysis polynomialRegression = askingDegrees(curveRegression);
