#include "analysis/run/analysis_run.h"

#include <algorithm>
#include <iterator>

void startOptions(AnalysisOptions& options, const Settings& settings) {
    options = {};
    options.settings = settings;
    options.quantification3Count = 2;
    resetSlots(options);
}

void resetSlots(AnalysisOptions& options) {
    std::fill(std::begin(options.slotColumns), std::end(options.slotColumns), 0);
    std::fill(std::begin(options.slotDegrees), std::end(options.slotDegrees), 1.0);
}

void clearPurposes(AnalysisOptions& options) {
    std::fill(std::begin(options.purposes), std::end(options.purposes), 0);
}

void takePurposes(AnalysisRun& run) {
    clearPurposes(run.options);
    int count = 0;
    for (std::int32_t v = 1; v <= run.data.loaded.variables && count < AnalysisOptions::purposeCount; ++v) {
        if (run.data.selectionFlags[static_cast<std::size_t>(v)] != 0) run.options.purposes[count++] = v;
    }
}

void selectPurposes(AnalysisRun& run) {
    for (std::int32_t& flag : run.data.selectionFlags) flag = 0;
    for (const std::int32_t v : run.options.purposes) {
        if (v >= 1 && v <= run.data.loaded.variables)
            run.data.selectionFlags[static_cast<std::size_t>(v)] = 1;
    }
}
