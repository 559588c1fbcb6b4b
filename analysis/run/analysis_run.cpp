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

void takePurposes(AnalysisRun& run, OwnPurposes own) {
    if (own != nullptr) {
        std::copy(std::begin(run.*own), std::end(run.*own), run.options.purposes);
        return;
    }
    std::fill(std::begin(run.options.purposes), std::end(run.options.purposes), 0);
    int count = 0;
    for (std::int32_t v = 1; v <= run.data.loaded.variables && count < AnalysisOptions::purposeCount; ++v) {
        if (run.data.selectionFlags[v] != 0) run.options.purposes[count++] = v;
    }
}

void selectPurposes(AnalysisRun& run, OwnPurposes own) {
    const PurposeList& purposes = run.options.purposes;
    if (own != nullptr) std::copy(std::begin(purposes), std::end(purposes), run.*own);
    for (std::int32_t& flag : run.data.selectionFlags) flag = 0;
    for (const std::int32_t v : purposes) {
        if (v >= 1 && v <= run.data.loaded.variables) run.data.selectionFlags[v] = 1;
    }
}

void forgetPurposes(AnalysisRun& run) {
    for (PurposeList* list : {&run.canonicalPurposes, &run.discriminantGroup})
        std::fill(std::begin(*list), std::end(*list), 0);
}
