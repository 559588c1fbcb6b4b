#pragma once

#include <span>

#include "report/charts/chart.h"

struct AnalysisRun;

// One of the pictures that an analysis can be asked for by name. `build` describes it from the record of
// results that the analysis hands to buildPicture, by a function that takes this record itself.
struct Picture {
    // What a user can ask of it.
    enum Wishes : unsigned {
        axes = 1,     // which two of several axes it shows
        groups = 2,   // that its samples are told apart by groups
        ellipses = 4, // around these
        labels = 8,   // of the samples
        curves = 16,  // that are those of the groups, which thus have to be known when it is described
        map = axes | groups | ellipses | labels,
        scatter = groups | ellipses | labels,
    };

    const char* name;
    const char* help;
    unsigned takes;
    ErrorCode (*build)(const AnalysisRun& run, const void* result, Chart& chart);
};

using Pictures = std::span<const Picture>;

// For Picture::build.
template <class Result, ErrorCode (*describe)(const AnalysisRun&, const Result&, Chart&)>
ErrorCode describeResult(const AnalysisRun& run, const void* result, Chart& chart) {
    return describe(run, *static_cast<const Result*>(result), chart);
}

// What who starts the runs wants to see of them.
struct PictureWish {
    static constexpr Index most = 4; // pictures that a kind has

    Pictures pictures;    // empty: none, and no analysis spends time or memory on them
    bool isOfAll = false; // each run sets `pictures` to all of its kind
    Index axes[2] = {0, 1};
    SampleGroups groups; // of the working samples
};
