#include "analysis/run/settings.h"

#include <cstdio>

namespace {

constexpr RegressionOptions defaultRegression = {2, 0, 2.0, 1.5, 0.05};
constexpr SurvivalOptions defaultSurvival = {2, 1, 100, {}, 0.5};

} // namespace

void setDefaultSettings(Settings& settings) {
    settings = {};
    std::snprintf(settings.dataFileName, sizeof settings.dataFileName, "data.csv");
    std::snprintf(settings.sheetName, sizeof settings.sheetName, "data");
    settings.variableStringLength = 11;
    settings.sampleStringLength = 15;
    settings.expressGraph = 1;
    settings.fundamental = {1, 1, 1, 1};
    settings.regression = defaultRegression;
    settings.factor = {2, 1, 1, 1, 1, 0, 0};
    settings.discriminant = {1, 1, 0.05, 0.0, 0.1};
    settings.unused1140 = 2;
    settings.logLinear = {1, 1, 0, {3, 2, 3}};
    settings.similarity = {2};
    settings.logisticState = 1;
    settings.logisticIterations = 100;
    settings.logisticDivision = 0.5;
    settings.weibull = defaultSurvival;
    settings.hazard = defaultSurvival;
    settings.curve = defaultRegression;
}
