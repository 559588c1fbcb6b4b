#include "analysis/run/run_report.h"

#include <cstdio>
#include <cstring>

#include "report/table_formats.h"

namespace {

void writeMomentsLine(AnalysisRun& run) {
    char line[64] = "-- correlations of samples";
    if (run.data.moments.hasCounts)
        std::snprintf(line, sizeof line, "-- moments of %d samples", run.data.working.samples);
    writeOptionLine(run.report, line);
}

} // namespace

void openReport(AnalysisRun& run, const ReportOpening& opening) {
    const Settings& settings = run.options.settings;
    clearReport(run.report);
    continueReport(run, opening);
    SetFormatsFromData(run.report, run.data, settings.variableStringLength, settings.sampleStringLength);
}

void continueReport(AnalysisRun& run, const ReportOpening& opening) {
    Report& report = run.report;
    const char* const remark = run.numerics->remark;
    writeTitle(report, opening.title);
    if (remark != nullptr) {
        char line[64];
        std::snprintf(line, sizeof line, "-- %s", remark);
        writeOptionLine(report, line);
    }
    if (opening.option != nullptr) writeOptionLine(report, opening.option);
    if (run.data.working.moments != nullptr) writeMomentsLine(run);
    if (opening.isSpaced) endTable(report);
    report.status.clear();
    report.status.append("status : ");
    report.status.append(opening.status != nullptr ? opening.status : opening.title);
    if (remark != nullptr) report.status.appendFormat(", %s", remark);
}

void noteDeviation(AnalysisRun& run, const char* statistics) {
    if (run.numerics->textbook || std::strstr(run.deviations, statistics) != nullptr) return;
    const std::size_t used = std::strlen(run.deviations);
    std::snprintf(run.deviations + used, sizeof run.deviations - used, "%s%s", used > 0 ? ", " : "",
                  statistics);
}

void closeReport(Screens& screens, const Report& report) {
    screens.showLower(report);
    screens.showStatus(report);
}
