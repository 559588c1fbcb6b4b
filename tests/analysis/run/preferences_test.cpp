#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "analysis/run/preferences.h"

TEST(Preferences, GraphOptionsAreRememberedWhileTheGraphIsOff) {
    Settings settings = {};
    settings.expressGraph = settings.vectorSizing = 1;
    GraphPreferences remembered = {}, shown = openGraphPreferences(settings, remembered);
    shown.scatterNumbering = true;
    switchGraph(shown, remembered, false);
    EXPECT_FALSE(shown.scatterNumbering || shown.vectorSizing);
    applyGraphPreferences(shown, remembered, settings);
    EXPECT_EQ(settings.expressGraph + settings.scatterNumbering + settings.vectorSizing, 0);
    shown = openGraphPreferences(settings, remembered);
    EXPECT_TRUE(!shown.expressGraph && shown.scatterNumbering && shown.vectorSizing);
    applyGraphPreferences(shown, remembered, settings); // as they are shown, and the program ends
    remembered = startGraphPreferences(settings);
    shown = openGraphPreferences(settings, remembered);
    EXPECT_TRUE(!shown.expressGraph && shown.scatterNumbering && shown.vectorSizing);
    switchGraph(shown, remembered, true);
    EXPECT_TRUE(shown.expressGraph && shown.scatterNumbering && shown.vectorSizing);
}

TEST(Preferences, ArrowsStopAtTheirLimits) {
    const int steps[][4] = {{11, 31, 1, 12}, {31, 31, 1, 31}, {63, 63, 1, 63}, {99, 63, 1, 99},
                            {99, 63, 0, 98}, {7, 31, 0, 7},   {8, 63, 0, 7},   {-5, 63, 0, -5}};
    for (const auto& [length, most, up, next] : steps) EXPECT_EQ(spinStringLength(length, most, up), next);
}

// Each flag takes the bytes of its page.
TEST(Preferences, SavedPagesBecomeDefaults) {
    const std::size_t pages[][3] = {{136, 612, 880}, {140, 880, 888}, {144, 888, 900}};
    for (const auto& [flag, from, to] : pages) {
        std::string bytes(sizeof(Settings), 1), saved(sizeof(Settings), 0);
        bytes.replace(136, 12, 12, 0).replace(flag, 1, 1, 1);
        saved.replace(from, to - from, to - from, 1);
        Settings settings, defaults = {};
        std::memcpy(&settings, bytes.data(), sizeof settings);
        commitPreferenceDefaults(defaults, settings);
        EXPECT_TRUE(saved == std::string(reinterpret_cast<const char*>(&defaults), sizeof defaults)) << flag;
        EXPECT_EQ(settings.saveFlags[6] + settings.saveFlags[7] + settings.saveFlags[8], 0);
    }
}
