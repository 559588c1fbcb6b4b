#pragma once

#include "analysis/run/analysis_run.h"

// What a driver does once its report is written: describes the pictures that are wished for from a result of
// the type that the functions in its pictures take. Returns success or outOfMemory.
[[nodiscard]] ErrorCode buildPictureFrom(AnalysisRun& run, const void* result);
template <class Result> [[nodiscard]] ErrorCode buildPicture(AnalysisRun& run, const Result& result) {
    return buildPictureFrom(run, &result);
}
