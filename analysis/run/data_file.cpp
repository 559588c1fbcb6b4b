#include "analysis/run/data_file.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "data/csv_reader.h"
#include "report/file_summary.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t csvFile = 0;

} // namespace

ErrorCode loadDataFile(Frontend& frontend, AnalysisRun& run) {
    releaseDataSet(run.data);
    frontend.setDataLoaded(false);
    ErrorCode code = fileNotOpened;
    if (run.options.settings.fileType == csvFile) code = readCsv(run.data.path, run.data.cells);
    if (code == success) {
        code = allocateDataSet(run.data);
        if (code != success) frontend.showLower(run.report);
    }
    if (code != success) return reportFileCode(frontend, run.report, code);

    resetSlots(run.options);
    buildDataSet(run.data);
    frontend.setDataLoaded(true);
    return success;
}

void showLoadedData(Frontend& frontend, AnalysisRun& run) {
    copyLoadedToWorking(run.data);
    const Settings& settings = run.options.settings;
    writeFileSummary(frontend, run.report, run.data, settings.variableStringLength, settings.sampleStringLength);
}

void applyExclusion(Frontend& frontend, AnalysisRun& run,
                    const std::int32_t (&slots)[ExclusionList::slotCount]) {
    std::copy(std::begin(slots), std::end(slots), run.data.exclusion.slots);
    buildDataSet(run.data);
    showLoadedData(frontend, run);
    frontend.enablePrediction(false);
}

void closeDataFile(Frontend& frontend, AnalysisRun& run) {
    run.report.upper.clear();
    run.report.lower.clear();
    run.report.status.clear();
    frontend.showUpper(run.report);
    frontend.showLower(run.report);
    frontend.showStatus(run.report);
    frontend.setDataLoaded(false);
}

void forceExtension(char (&path)[260], std::int32_t fileType) {
    const std::size_t length = std::strlen(path);
    if (length == 0) return;
    std::size_t last = length - 1;
    while (last > 0 && path[last] != '.') --last;
    std::snprintf(path + last + 1, sizeof path - last - 1, "%s", fileType == csvFile ? "csv" : "xls");
}
