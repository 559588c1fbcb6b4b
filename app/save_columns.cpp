#include "app/save_columns.h"

#include "analysis/run/data_file.h"
#include "analysis/run/saved_table.h"
#include "app/system_error.h"
#include "app/table_file.h"

namespace {

void tell(const Program& program, const char* text) {
    MessageBoxA(program.window, text, "alert", MB_OK | MB_ICONEXCLAMATION);
}

} // namespace

void saveColumns(const Program& program) {
    const AnalysisRun& run = program.run;
    TextBuffer text;
    if (writeSavedTable(run, text) != success) {
        tell(program, "failed to allocate memory for data");
        return;
    }
    if (!canBeReadAgain(text)) {
        tell(program,
             "a line would be too long to be read again :\nexclude variables, and run the analysis again");
        return;
    }
    char path[sizeof run.data.path] = "";
    static_cast<void>(proposeTablePath(run.data.path, "-results.csv", path));
    if (!chooseTableTarget(program.window, program, path)) return;
    if (isSameFile(run.data.path, path)) {
        tell(program, "this is the file of the data :\nsave the table under another name");
        return;
    }
    const DWORD error = writeWhole(path, text);
    if (error != ERROR_SUCCESS) showSystemError(program.window, error);
}
