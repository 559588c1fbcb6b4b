#include "report/file_summary.h"

#include <cstring>

#include "report/doubt_messages.h"
#include "report/table_formats.h"
#include "report/tables.h"

void writeFileSummary(Screens& screens, Report& report, const DataSet& data, int variableLength,
                      int labelLength, bool tellDoubts) {
    const DataMatrix& working = data.working;
    const char* separator = std::strrchr(data.path, '\\');
    const char* name = separator != nullptr ? separator + 1 : data.path;

    report.upper.clear();
    report.upper.append("\n");
    report.status.clear();
    report.status.append("status : ");
    for (TextBuffer* text : {&report.upper, &report.status}) {
        text->appendFormat("opened data file named : '%s'", name);
    }
    if (tellDoubts) writeDoubtStatus(report.status, data);
    for (TextBuffer* text : {&report.upper, &report.status}) text->append("\n");
    report.upper.appendFormat("\t'%s'\n\t-- %d samples, %d variables\n", data.path, working.samples,
                              working.variables);
    report.upper.append("\tvariables : ");
    for (std::int32_t v = 0; v < working.variables; ++v) {
        if (v > 0) report.upper.append(", ");
        report.upper.append(working.name(v));
    }
    SetFormatsFromData(report, data, variableLength, labelLength);
    report.upper.append("\n\n");
    report.lower.clear();
    WriteDataTable(report, data, working.values.data());
    report.upper.append({report.lower.text(), report.lower.length()});
    screens.showUpper(report);
    screens.showStatus(report);
}
