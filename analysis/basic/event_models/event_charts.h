#pragma once

#include "analysis/basic/event_models/event_data.h"
#include "analysis/basic/event_models/event_model_report.h"
#include "analysis/run/build_picture.h"

// What the pictures of event models share.

// Titles and axes of survival over time.
void startSurvivalChart(const AnalysisRun& run, const EventData& events, const char* title, Chart& chart);

// Adds a curve of survival as steps: 1 until the first of `count` times, and so on until `end`.
[[nodiscard]] ErrorCode addSurvivalSteps(const char* name, int style, const double* times,
                                         const double* survivals, Index count, double end, Chart& chart);

// Adds the share that survives by the data alone (Kaplan and Meier 1958): of all samples, or of each group
// where there are some. Returns success or outOfMemory.
[[nodiscard]] ErrorCode addEmpiricalSurvival(const EventData& events, Chart& chart);

// The exponentials of a model's coefficients with intervals of 95 %, one row for each covariate.
struct RatioChart {
    const EventData& events;
    const EventCoefficients& coefficients;
    const char* title;
    const char* ratioName;
};
// Returns success or outOfMemory.
ErrorCode describeRatios(const AnalysisRun& run, const RatioChart& ratios, Chart& chart);
