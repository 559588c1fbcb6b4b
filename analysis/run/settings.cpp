#include "analysis/run/settings.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr RegressionOptions defaultRegression = {2, 0, 2.0, 1.5, 0.05};
constexpr SurvivalOptions defaultSurvival = {2, 1, 100, {}, 0.5};

// More than any arrangement of screens; keeps the sums below within 32 bits.
constexpr std::int32_t farthest = 1 << 20;

bool isWild(std::int32_t position) {
    return position < -farthest || position > farthest;
}

bool meets(const Settings& kept, const ScreenArea& screens) {
    return !isWild(kept.windowRight) && !isWild(kept.windowBottom) &&
           std::max(kept.windowLeft, screens.left) < std::min(kept.windowRight, screens.right) &&
           std::max(kept.windowTop, screens.top) < std::min(kept.windowBottom, screens.bottom);
}

// Settles one direction; `size` of 0 means that nothing is kept.
void settle(std::int32_t& first, std::int32_t& last, std::int32_t& size, std::int32_t usual,
            std::int32_t screen) {
    if (size != 0) return;
    size = usual;
    if (first == 0) first = (screen - usual) / 2;
    last = first + size;
}

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

void settleWindowRectangle(Settings& settings, std::int32_t screenWidth, std::int32_t screenHeight,
                           const ScreenArea& allScreens) {
    for (int trial = 0; trial < 2; ++trial) {
        if (settings.windowWidth == 0 || settings.windowHeight == 0) {
            settings.screenWidth = screenWidth;
            settings.screenHeight = screenHeight;
        }
        if (!isWild(settings.windowLeft) && !isWild(settings.windowTop)) {
            settle(settings.windowLeft, settings.windowRight, settings.windowWidth, 800, screenWidth);
            settle(settings.windowTop, settings.windowBottom, settings.windowHeight, 480, screenHeight);
            if (meets(settings, allScreens)) return;
        }
        settings.windowLeft = settings.windowTop = settings.windowRight = settings.windowBottom = 0;
        settings.windowWidth = settings.windowHeight = 0;
    }
}
