#include "analysis/run/results.h"

#include <algorithm>

void offerResults(Frontend& frontend, const AnalysisRun& run) {
    const bool hasChart = std::any_of(std::begin(run.charts), std::end(run.charts),
                                      [](const Chart& chart) { return chart.isDescribed; });
    frontend.enableResults(run.columns.count > 0, hasChart || run.graph.present);
}

void releaseResults(Frontend& frontend, AnalysisRun& run) {
    run.columns.release();
    run.expressions.text.clear();
    for (Chart& chart : run.charts) chart = {};
    frontend.enableResults(false, false);
}
