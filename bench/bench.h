#pragma once

#include <chrono>
#include <sys/resource.h>

// Benchmarks, each of which prints its lines of the table. The data comes from fixed seeds.
void benchLoading();
void benchWriting(int samples, int variables);
void benchKendall();
void benchMerging();
void benchEigen();
void benchStepwise();

inline double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Of the process so far.
inline double peakMegabytes() {
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}
