#include "analysis/run/preferences.h"

#include <cstring>

namespace {

// Flags of the pages' boxes among the "save as default" flags.
constexpr int sourceFlag = 6;
constexpr int lengthFlag = 7;
constexpr int graphFlag = 8;

} // namespace

GraphPreferences startGraphPreferences(const Settings& settings) {
    return {settings.expressGraph != 0, settings.scatterNumbering != 0, settings.vectorSizing != 0};
}

GraphPreferences openGraphPreferences(const Settings& settings, const GraphPreferences& remembered) {
    if (settings.expressGraph == 0) return {false, remembered.scatterNumbering, remembered.vectorSizing};
    return startGraphPreferences(settings);
}

void switchGraph(GraphPreferences& shown, GraphPreferences& remembered, bool on) {
    if (shown.expressGraph && !on) {
        remembered = shown;
        shown.scatterNumbering = shown.vectorSizing = false;
    }
    shown.expressGraph = on;
}

void applyGraphPreferences(const GraphPreferences& shown, GraphPreferences& remembered, Settings& settings) {
    if (shown.expressGraph) remembered = shown;
    settings.expressGraph = shown.expressGraph;
    settings.scatterNumbering = shown.scatterNumbering;
    settings.vectorSizing = shown.vectorSizing;
}

std::int32_t spinStringLength(std::int32_t length, std::int32_t most, bool up) {
    if (up) return length < most ? length + 1 : length;
    return length > leastStringLength ? length - 1 : length;
}

void commitPreferenceDefaults(Settings& defaults, Settings& settings) {
    std::int32_t* const flags = settings.saveFlags;
    if (flags[sourceFlag] != 0) {
        defaults.fileType = settings.fileType;
        defaults.linkMethod = settings.linkMethod;
        std::memcpy(defaults.sheetName, settings.sheetName, sizeof defaults.sheetName);
    }
    if (flags[lengthFlag] != 0) {
        defaults.variableStringLength = settings.variableStringLength;
        defaults.sampleStringLength = settings.sampleStringLength;
    }
    if (flags[graphFlag] != 0) {
        defaults.expressGraph = settings.expressGraph;
        defaults.scatterNumbering = settings.scatterNumbering;
        defaults.vectorSizing = settings.vectorSizing;
    }
    flags[sourceFlag] = flags[lengthFlag] = flags[graphFlag] = 0;
}
