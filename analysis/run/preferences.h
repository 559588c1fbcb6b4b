#pragma once

#include "analysis/run/settings.h"

// The rules of the preference pages that a window is not needed for.

// The check states of the page "graph". The two options can be chosen while the graph is on only; the values
// that they had then are remembered for the next time the page opens.
struct GraphPreferences {
    bool expressGraph;
    bool scatterNumbering;
    bool vectorSizing;
};

// What is remembered when the program starts: the options as the settings keep them, which may be chosen
// although the graph is off.
GraphPreferences startGraphPreferences(const Settings& settings);

// What the page shows on opening: with the graph off, the remembered options.
GraphPreferences openGraphPreferences(const Settings& settings, const GraphPreferences& remembered);

// Switches the graph on or off; off unchecks both options. Their values while it was on are remembered.
void switchGraph(GraphPreferences& shown, GraphPreferences& remembered, bool on);

void applyGraphPreferences(const GraphPreferences& shown, GraphPreferences& remembered, Settings& settings);

// The arrows of the string lengths stop at these; what is typed is taken as typed.
constexpr std::int32_t leastStringLength = 7;
constexpr std::int32_t mostVariableString = 31;
constexpr std::int32_t mostSampleString = 63;
std::int32_t spinStringLength(std::int32_t length, std::int32_t most, bool up);

// Copies the fields of every page whose "save as default" box (921..923) was checked from the run's settings
// into the kept defaults, then clears the three flags.
void commitPreferenceDefaults(Settings& defaults, Settings& settings);
