#include "analysis/run/build_picture.h"

#include <iterator>

namespace {

ErrorCode describe(const AnalysisRun& run, const Picture& picture, const void* result, Chart& chart) {
    chart = {};
    ErrorCode code = chart.groups.copyFrom(run.pictureWish.groups);
    if (code == success) code = picture.build(run, result, chart);
    chart.isDescribed = code == success && chart.refusal == nullptr;
    return code;
}

} // namespace

ErrorCode buildPictureFrom(AnalysisRun& run, const void* result) {
    ErrorCode code = success;
    Chart* chart = run.charts;
    for (const Picture& picture : run.pictureWish.pictures) {
        if (code == success && chart != std::end(run.charts)) code = describe(run, picture, result, *chart++);
    }
    return code;
}
