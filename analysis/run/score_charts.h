#pragma once

#include "analysis/run/build_picture.h"

// The pictures of analyses that give each sample co-ordinates on axes of decreasing weight: a map of two axes
// with what belongs to it, and the weights of all axes.
struct ScoreCharts {
    const char* title = "";         // of the analysis
    const char* axisName = "";      // "score" becomes "score 1"
    const Matrix* scores = nullptr; // samples x at least `count`
    Index count = 0;                // axes
    const double* shares = nullptr; // of the axes in the variance; null: unknown

    // Drawn as arrows, scaled to the extent of the scores: variables x axes.
    const Matrix* arrows = nullptr;
    TextView arrowNames = {};
    // Drawn as a second cloud of points: categories x axes.
    const Matrix* others = nullptr;
    TextView otherNames = {};
    const char* othersName = "";
    const Matrix* means = nullptr; // of the groups of `groupColumn`: groups x axes; a third cloud
    const char* samplesName = "";  // beside them

    bool isEqualScale = false; // distances mean something
    // Of a scree plot; null: there is none.
    const double* weights = nullptr;
    Index weightCount = 0;
    const char* weightName = "";
    double weightLevel = 0.0; // that is marked; 0: none
    // The column of the working data that tells the samples' groups from 1; -1: there is none.
    Index groupColumn = -1;
};

// Both describe a chart, or say in its refusal why there is none. Return success or outOfMemory.
ErrorCode describeMap(const AnalysisRun& run, const ScoreCharts& scores, Chart& chart);
ErrorCode describeScree(const AnalysisRun& run, const ScoreCharts& scores, Chart& chart);

// "map", then "scree".
inline constexpr Picture scorePictures[] = {
    {"map", "the samples on two axes, with what the axes are made of", Picture::map,
     describeResult<ScoreCharts, describeMap>},
    {"scree", "the weight of each axis, from the greatest on", 0, describeResult<ScoreCharts, describeScree>},
};
