#pragma once

#include "report/parted_work.h"

constexpr int mostThreads = 256;

// How many threads the machine runs at once, from 1 to mostThreads.
int machineThreads();

// Computes the work by so many threads, the calling one among them. Where the system refuses one, those that
// there are compute it. Returns what ended the work, when all threads have ended.
[[nodiscard]] ErrorCode computeByThreads(PartedWork& work, int threads);
