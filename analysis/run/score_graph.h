#pragma once

#include "analysis/run/analysis_run.h"
#include "report/screens.h"

// A scatter of the working samples in some scores, with vectors from the origin: the graph of nearly every
// analysis that has one.
struct ScoreGraph {
    // Names of the series; null: "prefix 1", "prefix 2", ...
    const char* const* seriesNames = nullptr;
    const char* seriesPrefix = "";
    Index seriesCount = 0;
    const Matrix* scores = nullptr; // samples x at least seriesCount
    // Written beside the items; null: the running numbers from 1.
    const std::int32_t* numbers = nullptr;
    // vectors x at least seriesCount; null: one empty vector with zero values.
    const Matrix* vectors = nullptr;
    TextView vectorNames = {};
    // The preferences "scatter numbering" and "vector sizing" count for components and factors only.
    bool takesPreferences = false;
};

// Builds the run's graph when the preference "express graph" is on. Returns success, outOfMemory or
// graphNotBuilt (told already).
[[nodiscard]] ErrorCode buildScoreGraph(Screens& screens, AnalysisRun& run, const ScoreGraph& scores);

// Switches numbering and sized vectors on as the preferences have them.
void takeGraphPreferences(const Settings& settings, GraphSpec& spec);
