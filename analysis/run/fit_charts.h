#pragma once

#include "analysis/run/build_picture.h"

// The pictures of a fitted model of a purpose variable: what it predicts against what was measured, and what
// is left over.
struct FitCharts {
    const char* title = "";
    const char* purpose = ""; // the name of its variable
    // Of the samples, each so many numbers after the one before.
    const double* measured = nullptr;
    Index measuredStride = 1;
    const double* predicted = nullptr;
    Index predictedStride = 1;
    const double* residuals = nullptr; // standardized
    Index residualStride = 1;

    // Of a model with a single explanatory variable: its values, and the curve with its band, which is empty
    // where there is no interval.
    const double* explanatory = nullptr; // null: there are more
    Index explanatoryStride = 1;
    const char* explanatoryName = "";
    // Fills the curve, and unless it is null the band, over the x that they have.
    void (*describeCurve)(const AnalysisRun& run, ChartLayer& curve, ChartLayer* band) = nullptr;
    double alpha = 0.0; // of the band; 0: there is none
};

// Both describe a chart, or say in its refusal why there is none. Return success or outOfMemory.
ErrorCode describeFit(const AnalysisRun& run, const FitCharts& fit, Chart& chart);
ErrorCode describeResiduals(const AnalysisRun& run, const FitCharts& fit, Chart& chart);

// "fit", then "residuals".
inline constexpr Picture fitPictures[] = {
    {"fit", "the curve over a single explanatory variable, else predictions against measured values",
     Picture::scatter, describeResult<FitCharts, describeFit>},
    {"residuals", "standardized residuals against predictions", Picture::scatter,
     describeResult<FitCharts, describeResiduals>},
};
