#pragma once

#include <limits>

// The largest changes of the last two rounds of an iteration.
struct Settling {
    double change = 0.0;
    double before = 0.0;
    bool reached = true; // what ends the iteration, before its limit of rounds

    void add(double next) {
        before = change;
        change = next;
    }

    // How far a linear convergence is from its end (Aitken 1926).
    double remaining() const {
        if (change == 0.0) return 0.0;
        return change < before ? change * change / (before - change)
                               : std::numeric_limits<double>::infinity();
    }
};
