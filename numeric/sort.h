#pragma once

#include "numeric/block.h"

// Sorts n keys into ascending order by a heap sort (Williams 1964) and moves companion[i] with keys[i].
// Not stable: the order in which equal keys leave shows in reports and follows from the heap alone.
// Keys that are not a number leave the order undefined, nothing else. Returns 0.
ErrorCode SortKeysWithCompanion(Index n, double* keys, double* companion);
