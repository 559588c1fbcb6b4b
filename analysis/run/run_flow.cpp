#include "analysis/run/run_flow.h"

#include <algorithm>

#include "analysis/run/commands.h"
#include "analysis/run/repeat_command.h"
#include "analysis/run/results.h"
#include "analysis/run/saved_defaults.h"
#include "numeric/moments.h"
#include "report/cells.h"
#include "report/messages.h"

namespace {

bool asksFactorNumber(OptionFields fields) {
    return std::any_of(fields.begin(), fields.end(), [](const OptionField& field) {
        return field.offset == offsetof(AnalysisOptions, settings.factor.factorNumber);
    });
}

// Another analysis may have had more purposes than the lists of these fields can show.
void dropPurposes(AnalysisOptions& options, OptionFields fields) {
    for (const OptionField& field : fields) {
        if (field.offset != offsetof(AnalysisOptions, purposes)) continue;
        std::fill(options.purposes + field.count, options.purposes + AnalysisOptions::purposeCount, 0);
    }
}

} // namespace

ErrorCode runAnalysisCommand(Frontend& frontend, Settings& defaults, AnalysisRun& run, int command) {
    const AnalysisKind* kind = findKind(command - firstAnalysisCommand);
    if (kind == nullptr || !kind->onMenu || kind->analysis == nullptr) return success;

    frontend.closeGraph();
    releaseGraph(run.graph);
    releaseResults(frontend, run);
    copyLoadedToWorking(run.data);
    run.kind = kind->number;
    frontend.enablePrediction(false);
    run.data.model.kind = FittedModel::none;
    run.deviations[0] = '\0';
    run.repeating[0] = '\0';
    const DataMatrix& loaded = run.data.loaded;
    const bool hasCount = loaded.moments == nullptr || loaded.moments->hasCounts;
    if (kind->sizeCheck && hasCount && loaded.samples - loaded.variables < leastExcess) {
        return reportResult(frontend, run, tooFewSamples);
    }
    if (loaded.variables == 0) return reportResult(frontend, run, noEffectiveVariable);
    return dispatchAnalysis(frontend, defaults, run);
}

ErrorCode dispatchAnalysis(Frontend& frontend, Settings& defaults, AnalysisRun& run) {
    const AnalysisKind& asked = *findKind(run.kind);
    const Analysis& analysis = *asked.analysis;
    if (asksFactorNumber(analysis.fields)) {
        run.options.settings.factor.factorNumber = DefaultFactorCount(run.data.working.variables);
    }
    if (analysis.chosenKind != nullptr) run.options.*analysis.chosenKind = run.kind - analysis.firstKind;
    takePurposes(run, analysis.ownPurposes);
    dropPurposes(run.options, analysis.fields);
    if (!frontend.chooseOptions(run, asked)) return success;
    selectPurposes(run, analysis.ownPurposes);
    if (analysis.chosenKind != nullptr) run.kind = analysis.firstKind + run.options.*analysis.chosenKind;
    commitSavedDefaults(defaults, run);

    const AnalysisKind& kind = *findKind(run.kind);
    writeRepeatCommand(run, kind);
    if (run.pictureWish.isOfAll) run.pictureWish.pictures = picturesOf(kind);
    ErrorCode code = kind.analysis->driver(frontend, run);
    if (code == success && !isComplete(run.report)) code = outOfMemory;
    if (code == success && kind.enablesPrediction) frontend.enablePrediction(true);
    if (code == success) offerResults(frontend, run);
    if (code == success && run.graph.present) frontend.openGraphWindow(run.graph);
    return reportResult(frontend, run, code);
}

void chooseNumerics(Frontend& frontend, AnalysisRun& run, const Numerics& numerics) {
    if (run.numerics == &numerics) return;
    run.numerics = &numerics;
    frontend.enablePrediction(false);
}

ErrorCode reportResult(Screens& screens, AnalysisRun& run, ErrorCode code) {
    const int shortage = run.data.working.variables - run.data.working.samples + leastExcess;
    return reportAnalysisCode(screens, run.report, code, shortage);
}

DataState dataState(const DataSet& data, bool dataLoaded) {
    if (dataLoaded) return DataState::loaded;
    return data.notes.refusal.cause != RefusalCause::none ? DataState::refused : DataState::none;
}

bool isCommandEnabled(int command, DataState state) {
    const bool dataLoaded = state == DataState::loaded;
    if (command == commandOpenFile || command == commandImportTable) return !dataLoaded;
    if (command == commandCheckData) return state != DataState::none;
    if (command == commandCloseFile || command == commandExcludeVariable) return dataLoaded;
    const AnalysisKind* kind = findKind(command - firstAnalysisCommand);
    return kind != nullptr && kind->onMenu && dataLoaded;
}

bool leavesTableRowsOut(const DataSet& data, const Analysis& analysis, const AnalysisOptions& options) {
    if (analysis.isTable == nullptr || !analysis.isTable(options)) return false;
    return data.leftOut > 0 || data.policy == MissingPolicy::omit;
}
