#pragma once

#include <array>
#include <limits>

#include "analysis/run/option_field.h"

// What the options of the event models share; offsets are those of the values in AnalysisOptions.
constexpr OptionField stateField(std::size_t offset, int control) {
    return {.type = OptionType::variable,
            .name = "state",
            .help = "the variable that tells which samples have the event",
            .offset = offset,
            .control = control};
}

constexpr OptionField iterationsField(std::size_t offset, int control, int arrows) {
    return {.type = OptionType::wholeNumber,
            .name = "iterations",
            .help = "give up after N iterations",
            .offset = offset,
            .control = control,
            .arrows = arrows,
            .least = 1.0,
            .most = 9999.0,
            .range = OptionRange::arrows};
}

constexpr OptionField divisionField(std::size_t offset, int control, int arrows) {
    constexpr double boundless = std::numeric_limits<double>::infinity();
    return {.type = OptionType::real,
            .name = "division",
            .help = "a sample has the event when its state is above X",
            .offset = offset,
            .control = control,
            .arrows = arrows,
            .step = 0.1,
            .least = -boundless,
            .most = boundless};
}

// The options of both survival models; `group` is the offset of their SurvivalOptions. The dialog's controls
// are the lists of the state and the time, the edits of the iterations and the division, then their arrows.
constexpr std::array<OptionField, 4> survivalFields(std::size_t group, int firstControl) {
    return {
        stateField(group + offsetof(SurvivalOptions, stateColumn), firstControl),
        {.type = OptionType::variable,
         .name = "time",
         .help = "the variable with the time of the event, or up to which there was none",
         .offset = group + offsetof(SurvivalOptions, timeColumn),
         .control = firstControl + 1},
        iterationsField(group + offsetof(SurvivalOptions, iterations), firstControl + 2, firstControl + 4),
        divisionField(group + offsetof(SurvivalOptions, division), firstControl + 3, firstControl + 5)};
}

inline const char* refuseSurvival(const SurvivalOptions& options) {
    if (options.stateColumn < 1) return "please select one state variable";
    if (options.timeColumn < 1) return "please select one time variable";
    if (options.stateColumn == options.timeColumn) return "state and time variable must be different";
    return nullptr;
}
