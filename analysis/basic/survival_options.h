#pragma once

#include <array>
#include <limits>

#include "analysis/run/option_field.h"

// The options of both survival models; `group` is the offset of their SurvivalOptions. The dialog's controls
// are the lists of the state and the time, the edits of the iterations and the division, then their arrows.
constexpr std::array<OptionField, 4> survivalFields(std::size_t group, int firstControl) {
    constexpr double boundless = std::numeric_limits<double>::infinity();
    return {{{.type = OptionType::variable,
              .name = "state",
              .help = "the variable that tells which samples have the event",
              .offset = group + offsetof(SurvivalOptions, stateColumn),
              .control = firstControl},
             {.type = OptionType::variable,
              .name = "time",
              .help = "the variable with the time of the event, or up to which there was none",
              .offset = group + offsetof(SurvivalOptions, timeColumn),
              .control = firstControl + 1},
             {.type = OptionType::wholeNumber,
              .name = "iterations",
              .help = "give up after N iterations",
              .offset = group + offsetof(SurvivalOptions, iterations),
              .control = firstControl + 2,
              .arrows = firstControl + 4,
              .least = 1.0,
              .most = 9999.0,
              .bounded = true},
             {.type = OptionType::real,
              .name = "division",
              .help = "a sample has the event when its state is above X",
              .offset = group + offsetof(SurvivalOptions, division),
              .control = firstControl + 3,
              .arrows = firstControl + 5,
              .step = 0.1,
              .least = -boundless,
              .most = boundless}}};
}

inline const char* refuseSurvival(const SurvivalOptions& options) {
    if (options.stateColumn < 1) return "please select one state variable";
    if (options.timeColumn < 1) return "please select one time variable";
    if (options.stateColumn == options.timeColumn) return "state and time variable must be different";
    return nullptr;
}
