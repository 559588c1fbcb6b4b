#include "analysis/basic/regression/regression_options.h"

namespace {

constexpr const char* methods[] = {"all", "forward", "backward", "forward-selection", "backward-elimination"};
constexpr const char* criteria[] = {"aic", "f"};

// Controls of the dialog.
constexpr int purposeList = 2101;
constexpr int methodButtons = 2102;
constexpr int criterionButtons = 2107;
constexpr int fInEdit = 2109;
constexpr int fOutEdit = 2110;
constexpr int alphaEdit = 2111;

} // namespace

std::array<OptionField, 6> regressionFields(std::size_t group) {
    return {{
        {.type = OptionType::variable,
         .name = "purpose",
         .help = "the variable to explain",
         .offset = offsetof(AnalysisOptions, purposes),
         .control = purposeList},
        {.type = OptionType::choice,
         .name = "method",
         .help = "how the explanatory variables are selected",
         .offset = group + offsetof(RegressionOptions, method),
         .control = methodButtons,
         .choices = methods},
        {.type = OptionType::choice,
         .name = "criterion",
         .help = "what the selection goes by",
         .offset = group + offsetof(RegressionOptions, criterion),
         .control = criterionButtons,
         .choices = criteria},
        {.type = OptionType::real,
         .name = "f-in",
         .help = "the least F to enter a variable",
         .offset = group + offsetof(RegressionOptions, fIn),
         .control = fInEdit,
         .arrows = 2112,
         .step = 0.1,
         .least = 0.01,
         .most = 99.0},
        {.type = OptionType::real,
         .name = "f-out",
         .help = "the largest F to remove a variable, below f-in",
         .offset = group + offsetof(RegressionOptions, fOut),
         .control = fOutEdit,
         .arrows = 2113,
         .step = 0.1,
         .least = 0.01,
         .most = 99.0},
        {.type = OptionType::real,
         .name = "alpha",
         .help = "of the prediction intervals, 0 for none",
         .offset = group + offsetof(RegressionOptions, alpha),
         .control = alphaEdit,
         .arrows = 2114,
         .step = 0.01,
         .least = 0.01,
         .most = 0.5,
         .range = OptionRange::level},
    }};
}

bool isRegressionFieldEnabled(const RegressionOptions& options, const OptionField& field) {
    switch (field.control) {
    case criterionButtons:
        return options.method > 0;
    case fInEdit:
    case fOutEdit:
        return options.method > 0 && options.criterion == 1;
    default:
        return true;
    }
}

unsigned regressionMomentNeeds(const AnalysisOptions&) {
    return needsCount | needsMeans | needsDeviations;
}

const char* refuseRegression(const AnalysisOptions& options, const RegressionOptions& regression) {
    if (!(regression.fIn > regression.fOut)) return "f-in should be larger than f-out";
    return options.purposes[0] == 0 ? "please select one purpose variable" : nullptr;
}
