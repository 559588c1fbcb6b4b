#include "analysis/run/build_picture.h"

ErrorCode buildPictureFrom(AnalysisRun& run, const void* result) {
    const PictureWish& wish = run.pictureWish;
    if (wish.picture == nullptr) return success;
    run.chart = {};
    ErrorCode code = run.chart.groups.copyFrom(wish.groups);
    if (code == success) code = wish.picture->build(run, result, run.chart);
    run.chart.isDescribed = code == success && run.chart.refusal == nullptr;
    return code;
}
