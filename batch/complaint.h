#pragma once

#include "data/printf_format.h"

constexpr const char* programName = "ombrivantel-batch";

// A wrong command line: one line that says what is wrong.
struct Complaint {
    char text[1000] = "";

    [[gnu::format(PRINTF_KIND, 2, 3)]] void say(const char* format, ...);
    // Goes on with what it says.
    [[gnu::format(PRINTF_KIND, 2, 3)]] void add(const char* format, ...);
    bool any() const { return text[0] != '\0'; }
};
