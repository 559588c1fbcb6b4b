#pragma once

#include <cstdint>

#include "numeric/block.h"

// Sorts n keys into ascending order by a heap sort (Williams 1964) and moves companion[i] with keys[i].
// Not stable: the order in which equal keys leave shows in reports and follows from the heap alone.
// Keys that are not a number leave the order undefined, nothing else. Returns 0.
ErrorCode SortKeysWithCompanion(Index n, double* keys, double* companion);

// A value in the order of its bits, and its place.
struct SortItem {
    std::uint64_t key;
    std::uint32_t place;
};

// Puts the places 0 to n - 1 of the values into `order`, so that the values ascend and equal ones keep their
// order, by sorting the bytes of the values from the last one on (Seward 1954). What is not a number comes
// first or last. `scratch` holds 2 n items.
void findAscendingOrder(const double* values, std::uint32_t n, SortItem* scratch, std::uint32_t* order);
