#include "app/save_columns.h"

#include "analysis/run/data_file.h"
#include "analysis/run/saved_table.h"
#include "app/message_box.h"
#include "app/table_file.h"

void saveColumns(const Program& program) {
    const AnalysisRun& run = program.run;
    TextBuffer text;
    if (writeSavedTable(run, text) != success) {
        showOutOfMemory(program.window);
        return;
    }
    if (!canBeReadAgain(text)) {
        showAlert(
            program.window,
            "a line would be too long to be read again :\nexclude variables, and run the analysis again");
        return;
    }
    char path[pathSize] = "";
    static_cast<void>(proposeTablePath(run.data.path, "-results.csv", path));
    if (!chooseTableTarget(program.window, program, path)) return;
    if (isSameFile(run.data.path, path)) {
        showAlert(program.window, "this is the file of the data :\nsave the table under another name");
        return;
    }
    const DWORD error = writeWhole(path, text);
    if (error != ERROR_SUCCESS) showSystemError(program.window, error);
}
