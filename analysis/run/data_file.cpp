#include "analysis/run/data_file.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

#include "analysis/run/results.h"
#include "data/spreadsheet.h"
#include "report/cells.h"
#include "report/file_summary.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t csvFile = 0;
constexpr std::int32_t ddeLink = 0;

// A conversation cannot be left halfway, so that a code of setProgress waits for its end.
void showPercent(void* screens, int percent) {
    static_cast<void>(static_cast<Screens*>(screens)->setProgress(percent));
}

// Fills the cells from the workbook at run.data.path; the first failure ends it and is told. After a failed
// measurement the conversation is left to its owner.
LoadResult loadFromSpreadsheet(Frontend& frontend, Workbook& workbook, AnalysisRun& run) {
    run.report.upper.clear(); // an empty sheet has no message to take the place of an older one
    static_cast<void>(startProgress(frontend, run.report));
    SheetSize size;
    LinkCode code = workbook.connectWorkbook(run.data.path);
    if (code == LinkCode::done) code = measureSheet(workbook, size);
    if (code != LinkCode::done) {
        frontend.hideProgress();
        return {.link = reportDdeCode(frontend, run.report, code)};
    }

    TextList cells;
    const ErrorCode memory = cells.allocate(Index{size.rows} * size.cols);
    if (memory == success) {
        code = fetchSheet(workbook, size, cells, showPercent, static_cast<Screens*>(&frontend));
    }
    frontend.hideProgress();
    if (code != LinkCode::done) reportDdeCode(frontend, run.report, code);
    const LinkCode ending = workbook.disconnectWorkbook();
    if (memory != success) return {.file = reportFileCode(frontend, run.report, FileCode::noMemory)};
    if (code != LinkCode::done) return {.link = code};
    if (ending != LinkCode::done) return {.link = reportDdeCode(frontend, run.report, ending)};
    run.data.cells = {size.rows, size.cols, std::move(cells)};
    return {};
}

LoadResult loadFromCsv(Frontend& frontend, AnalysisRun& run) {
    const FileCode code = frontend.readTable(run.data.path, run.data.cells, run.data.notes);
    if (code != FileCode::done) reportFileCode(frontend, run.report, code);
    return {.file = code};
}

LoadResult loadMoments(Frontend& frontend, AnalysisRun& run) {
    FileCode code = frontend.readMoments(run.data.path, run.data.moments, run.data.notes);
    if (code == FileCode::done && nameMoments(run.data) != success) code = FileCode::noMemory;
    if (code != FileCode::done) reportFileCode(frontend, run.report, code);
    return {.file = code};
}

// There is no way to a workbook but the one link.
LoadResult loadCells(Frontend& frontend, AnalysisRun& run) {
    const Settings& settings = run.options.settings;
    if (run.takesMoments) return loadMoments(frontend, run);
    if (settings.fileType == csvFile) return loadFromCsv(frontend, run);
    Workbook* workbook = settings.linkMethod == ddeLink ? frontend.workbook() : nullptr;
    if (workbook == nullptr) return {.file = reportFileCode(frontend, run.report, FileCode::notOpened)};
    return loadFromSpreadsheet(frontend, *workbook, run);
}

// The variables are counted anew.
void rebuild(AnalysisRun& run) {
    buildDataSet(run.data);
    forgetPurposes(run);
}

} // namespace

LoadResult loadDataFile(Frontend& frontend, AnalysisRun& run) {
    releaseDataSet(run.data);
    run.repeating[0] = '\0';
    run.isLinked = run.options.settings.fileType != csvFile;
    frontend.setDataLoaded(false);
    const LoadResult result = loadCells(frontend, run);
    if (!result.isLoaded()) return result;
    if (allocateDataSet(run.data) != success) {
        frontend.showLower(run.report);
        return {.file = reportFileCode(frontend, run.report, FileCode::noMemory)};
    }

    resetSlots(run.options);
    rebuild(run);
    // The only variable that can tell the groups of moments.
    if (run.data.moments.isGrouped) run.discriminantGroup[0] = run.data.loaded.variables;
    frontend.setDataLoaded(true);
    return {};
}

void showLoadedData(Frontend& frontend, AnalysisRun& run) {
    copyLoadedToWorking(run.data);
    const Settings& settings = run.options.settings;
    writeFileSummary(frontend, run.report, run.data, settings.variableStringLength,
                     settings.sampleStringLength, run.statusTellsDoubts);
}

void applyExclusion(Frontend& frontend, AnalysisRun& run,
                    const std::int32_t (&slots)[ExclusionList::slotCount]) {
    std::copy(std::begin(slots), std::end(slots), run.data.exclusion.slots);
    rebuild(run);
    showLoadedData(frontend, run);
    frontend.enablePrediction(false);
    releaseResults(frontend, run);
}

void closeDataFile(Frontend& frontend, AnalysisRun& run) {
    run.repeating[0] = '\0';
    run.report.upper.clear();
    clearReport(run.report);
    run.report.status.clear();
    frontend.showUpper(run.report);
    frontend.showLower(run.report);
    frontend.showStatus(run.report);
    releaseResults(frontend, run);
    frontend.setDataLoaded(false);
}

void forceExtension(char (&path)[pathSize], std::int32_t fileType) {
    const std::size_t length = std::strlen(path);
    if (length == 0) return;
    std::size_t last = length - 1;
    while (last > 0 && path[last] != '.') --last;
    std::snprintf(path + last + 1, sizeof path - last - 1, "%s", fileType == csvFile ? "csv" : "xls");
}

bool proposeTablePath(const char* path, const char* end, char (&proposed)[pathSize]) {
    std::string_view name(path);
    const std::size_t file = name.find_last_of("\\/:") + 1; // 0 when nothing is found
    const std::size_t extension = name.rfind('.');
    if (extension != std::string_view::npos && extension > file) name = name.substr(0, extension);
    proposed[0] = '\0';
    const std::size_t endSize = std::strlen(end) + 1;
    if (name.size() + endSize > sizeof proposed) return false;
    std::memcpy(proposed, name.data(), name.size());
    std::memcpy(proposed + name.size(), end, endSize);
    return true;
}

bool namedDataFile(const char* name, bool isThere, char (&path)[pathSize]) {
    const std::string_view given(name);
    const std::size_t file = given.find_last_of("\\/:") + 1; // 0 when nothing is found
    const bool hasExtension = given.find('.', file) != std::string_view::npos;
    const char* const extension = isThere || hasExtension ? "" : ".csv";
    if (given.size() + std::strlen(extension) >= sizeof path) return false;
    std::snprintf(path, sizeof path, "%s%s", name, extension);
    return true;
}
