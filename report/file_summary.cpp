#include "report/file_summary.h"

#include <algorithm>
#include <string_view>

#include "report/doubt_messages.h"
#include "report/structure.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

// The lines of the upper text: the title, then what is said of the file.
void recordLines(std::string_view rest, ReportStructure& structure) {
    bool isTitle = true;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size() - 1);
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        if (line.empty()) continue;
        if (line[0] == '\t') line.remove_prefix(1);
        if (isTitle) {
            structure.addTitle(line);
        } else {
            structure.addOption(line);
        }
        isTitle = false;
    }
}

} // namespace

void writeFileSummary(Screens& screens, Report& report, const DataSet& data, int variableLength,
                      int labelLength, bool tellDoubts) {
    const DataMatrix& working = data.working;
    const char* const name = fileName(data);

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
    clearReport(report);
    if (report.structure != nullptr && report.upper.join()) {
        recordLines(report.upper.view(), *report.structure);
    }
    WriteDataTable(report, data, working.values.data());
    report.upper.take(report.lower);
    screens.showUpper(report);
    screens.showStatus(report);
}
