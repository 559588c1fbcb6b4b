#include "app/table_import.h"

#include <cstdio>
#include <cstring>

#include "analysis/run/data_file.h"
#include "app/code_page.h"
#include "app/import_dialog.h"
#include "app/message_box.h"
#include "app/neighbour_file.h"
#include "app/table_file.h"

namespace {

// A file up to this size is looked at as a whole after each choice, a longer one only when it is saved.
constexpr std::uint64_t smallFile = 4 << 20; // bytes

bool chooseSource(const Program& program, char (&path)[pathSize]) {
    OPENFILENAMEA dialog = {};
    dialog.lpstrTitle = "Import Table";
    dialog.lpstrFilter = "tables (*.csv;*.txt;*.tsv;*.dat)\0*.csv;*.txt;*.tsv;*.dat\0all files (*.*)\0*.*\0";
    dialog.lpstrFile = path;
    dialog.Flags = OFN_FILEMUSTEXIST;
    return chooseTablePath(program.window, program, GetOpenFileNameA, dialog);
}

// What the dialog saves by.
struct Import {
    const Program& program;
    const char* source;
    char (&target)[pathSize];
};

// False: nothing is written. Of a refusal, which the messages hold, the dialog tells.
bool save(HWND owner, void* context, ByteSource& source, const ImportOptions& options,
          ImportMessages& messages) {
    Import& import = *static_cast<Import*>(context);
    static_cast<void>(proposeTablePath(import.source, "-import.csv", import.target));
    if (!chooseTableTarget(owner, import.program, import.target)) return false;
    if (isSameFile(import.source, import.target)) {
        showAlert(owner, "this is the file that is imported :\nsave the table under another name");
        return false;
    }
    char neighbour[MAX_PATH];
    DWORD error = createNeighbour(import.target, neighbour);
    ErrorCode code = success;
    if (error == ERROR_SUCCESS) {
        const HCURSOR former = SetCursor(LoadCursorA(nullptr, IDC_WAIT));
        FileSink sink(neighbour);
        messages.clear();
        code = importTable(source, options, sink, messages);
        error = sink.close();
        // A refusal is no error of the system, but leaves nothing to put into place.
        const DWORD failure = code != success && error == ERROR_SUCCESS ? ERROR_INVALID_DATA : error;
        const DWORD placing = putInPlace(neighbour, import.target, failure);
        if (code == success) error = placing;
        SetCursor(former);
    }
    if (error != ERROR_SUCCESS) {
        showSystemError(owner, error);
        messages.clear();
    } else if (code == outOfMemory) {
        showOutOfMemory(owner);
    }
    return error == ERROR_SUCCESS && code == success;
}

} // namespace

bool showTableImport(const Program& program, char (&path)[pathSize], Block<char>& notes) {
    char source[sizeof path] = "", target[sizeof path] = "";
    if (!chooseSource(program, source)) return false;
    std::FILE* const file = std::fopen(source, "rb");
    if (file == nullptr) {
        showAlert(program.window, "the file cannot be read");
        return false;
    }
    FileSource bytes(file);
    Import import = {program, source, target};
    const bool saved = showImportDialog(program, bytes, sizeOf(source) <= smallFile, {save, &import}, notes);
    std::fclose(file);
    if (saved) std::memcpy(path, target, sizeof path);
    return saved;
}
