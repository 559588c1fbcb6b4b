#pragma once

#include <cstring>

#include "numeric/block.h"

// Two neighbouring elements in one register, which every x86-64 and 64-bit ARM processor has: the same
// arithmetic everywhere, without a choice at run time.
using Pair = double __attribute__((vector_size(16)));

inline Pair loadPair(const double* place) {
    Pair pair;
    std::memcpy(&pair, place, sizeof pair);
    return pair;
}

inline void storePair(Pair pair, double* place) {
    std::memcpy(place, &pair, sizeof pair);
}
