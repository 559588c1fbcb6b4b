#pragma once

#include "numeric/numerics.h"

// Of how many samples, explanatory and purpose variables.
struct CanonicalSizes {
    std::int32_t samples;
    Index q1;
    Index q2;
};

// The tests of m = min(q1, q2) canonical correlations.
struct CanonicalTests {
    // Bartlett's tests of the pairs from each one on.
    Block<double> wilks;
    Block<double> chiSquare;
    Block<double> chiProbability;
    Block<double> freedom;
    // Rao's test of all pairs; under classic numerics where q1 q2 > 2, and with a whole freedom2.
    double raoF = 0.0;
    double raoProbability = 1.0;
    double raoFreedom1 = 0.0;
    double raoFreedom2 = 0.0;

    // Zero-filled arrays; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index m);
};

// Fills the allocated record from the squared canonical correlations, descending; m of them are of use.
void findCanonicalTests(const Numerics& numerics, const CanonicalSizes& sizes, const Block<double>& squares,
                        CanonicalTests& tests);
