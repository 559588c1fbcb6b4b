#pragma once

#include <cstdlib>

// Ends the run of a fuzz target where something does not hold that must, whatever the input.
inline void require(bool held) {
    if (!held) std::abort();
}
