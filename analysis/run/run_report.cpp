#include "analysis/run/run_report.h"

#include "report/table_formats.h"

void openReport(AnalysisRun& run, const ReportOpening& opening) {
    const Settings& settings = run.options.settings;
    run.report.lower.clear();
    continueReport(run.report, opening);
    SetFormatsFromData(run.report, run.data, settings.variableStringLength, settings.sampleStringLength);
}

void continueReport(Report& report, const ReportOpening& opening) {
    writeTitle(report, opening.title);
    if (opening.option != nullptr) writeOptionLine(report, opening.option);
    if (opening.isSpaced) endTable(report);
    report.status.clear();
    report.status.append("status : ");
    report.status.append(opening.status != nullptr ? opening.status : opening.title);
}

void closeReport(Screens& screens, const Report& report) {
    screens.showLower(report);
    screens.showStatus(report);
}
