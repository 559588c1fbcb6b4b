#include "analysis/run/data_check.h"

#include "report/doubt_messages.h"

void checkData(Screens& screens, AnalysisRun& run) {
    TextBuffer& text = run.report.lower;
    const DataSet& data = run.data;
    text.clear();
    text.appendFormat("\ncheck of data file named : '%s'\n\n", fileName(data));
    if (data.notes.refusal.cause != RefusalCause::none) {
        writeRefusal(text, data.notes.refusal, windowDoubts);
    } else {
        if (data.policy == MissingPolicy::omit || data.leftOut > 0) writeLeftOut(text, data);
        writeDoubts(text, data, windowDoubts);
        if (countDoubts(data) == 0) text.append("nothing to doubt\n");
    }
    run.report.status.clear();
    run.report.status.append("status : data check");
    screens.showLower(run.report);
    screens.showStatus(run.report);
}
