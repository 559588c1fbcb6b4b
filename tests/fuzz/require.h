#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

// Ends the run of a fuzz target where something does not hold that must, whatever the input.
inline void require(bool held) {
    if (!held) std::abort();
}

// The same where nothing may be found that is wrong.
inline void requireNone(const std::string& found) {
    std::fputs(found.c_str(), stderr);
    require(found.empty());
}
