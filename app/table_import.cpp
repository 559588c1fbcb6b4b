#include "app/table_import.h"

#include <commdlg.h>
#include <cstdio>
#include <cstring>

#include "analysis/run/data_file.h"
#include "app/code_page.h"
#include "app/import_dialog.h"
#include "app/neighbour_file.h"
#include "app/open_file_dialog.h"
#include "app/system_error.h"

namespace {

// A file up to this size is looked at as a whole after each choice, a longer one only when it is saved.
constexpr std::uint64_t smallFile = 4 << 20; // bytes

bool choosePath(HWND owner, const Program& program, BOOL(WINAPI* ask)(OPENFILENAMEA*),
                OPENFILENAMEA& dialog) {
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.nFilterIndex = 1;
    dialog.nMaxFile = sizeof program.run.data.path;
    dialog.Flags |= OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (ask(&dialog) != 0) return true;
    if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL) tellPathTooLong(program);
    return false;
}

bool chooseSource(const Program& program, char (&path)[260]) {
    OPENFILENAMEA dialog = {};
    dialog.lpstrTitle = "Import Table";
    dialog.lpstrFilter = "tables (*.csv;*.txt;*.tsv;*.dat)\0*.csv;*.txt;*.tsv;*.dat\0all files (*.*)\0*.*\0";
    dialog.lpstrFile = path;
    dialog.Flags = OFN_FILEMUSTEXIST;
    return choosePath(program.window, program, GetOpenFileNameA, dialog);
}

bool chooseTarget(HWND owner, const Program& program, char (&path)[260]) {
    OPENFILENAMEA dialog = {};
    dialog.lpstrFilter = "csv file (*.csv)\0*.csv\0all files (*.*)\0*.*\0";
    dialog.lpstrDefExt = "csv";
    dialog.lpstrFile = path;
    dialog.Flags = OFN_PATHMUSTEXIST | OFN_OVERWRITEPROMPT;
    return choosePath(owner, program, GetSaveFileNameA, dialog);
}

// Which file a path leads to; false when there is none.
bool identify(const char* path, BY_HANDLE_FILE_INFORMATION& file) {
    const HANDLE handle = CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return false;
    const bool known = GetFileInformationByHandle(handle, &file) != 0;
    CloseHandle(handle);
    return known;
}

bool isSameFile(const char* path, const char* other) {
    BY_HANDLE_FILE_INFORMATION a, b;
    return identify(path, a) && identify(other, b) && a.dwVolumeSerialNumber == b.dwVolumeSerialNumber &&
           a.nFileIndexHigh == b.nFileIndexHigh && a.nFileIndexLow == b.nFileIndexLow;
}

class FileSink : public TableSink {
public:
    explicit FileSink(const char* path)
        : file_(CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr)),
          error_(file_ == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS) {}
    ~FileSink() override { close(); }
    FileSink(const FileSink&) = delete;
    FileSink& operator=(const FileSink&) = delete;

    bool write(std::string_view piece) override {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(piece.size());
        if (error_ != ERROR_SUCCESS) return false;
        if (WriteFile(file_, piece.data(), size, &written, nullptr) == 0) {
            error_ = GetLastError();
        } else if (written != size) {
            error_ = ERROR_DISK_FULL;
        }
        return error_ == ERROR_SUCCESS;
    }

    // The error of the system, or 0.
    DWORD close() {
        if (file_ != INVALID_HANDLE_VALUE && CloseHandle(file_) == 0 && error_ == ERROR_SUCCESS)
            error_ = GetLastError();
        file_ = INVALID_HANDLE_VALUE;
        return error_;
    }

private:
    HANDLE file_;
    DWORD error_;
};

// What the dialog saves by.
struct Import {
    const Program& program;
    const char* source;
    char (&target)[260];
};

// False: nothing is written. Of a refusal, which the messages hold, the dialog tells.
bool save(HWND owner, void* context, ByteSource& source, const ImportOptions& options,
          ImportMessages& messages) {
    Import& import = *static_cast<Import*>(context);
    static_cast<void>(proposeTablePath(import.source, import.target));
    if (!chooseTarget(owner, import.program, import.target)) return false;
    if (isSameFile(import.source, import.target)) {
        MessageBoxA(owner, "this is the file that is imported :\nsave the table under another name", "alert",
                    MB_OK | MB_ICONEXCLAMATION);
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
        MessageBoxA(owner, "failed to allocate memory for data", "alert", MB_OK | MB_ICONEXCLAMATION);
    }
    return error == ERROR_SUCCESS && code == success;
}

// Bytes; 0 when it is not known.
std::uint64_t sizeOf(const char* path) {
    BY_HANDLE_FILE_INFORMATION file;
    return identify(path, file) ? std::uint64_t{file.nFileSizeHigh} << 32 | file.nFileSizeLow : 0;
}

} // namespace

bool showTableImport(const Program& program, char (&path)[260], Block<char>& notes) {
    char source[sizeof path] = "", target[sizeof path] = "";
    if (!chooseSource(program, source)) return false;
    std::FILE* const file = std::fopen(source, "rb");
    if (file == nullptr) {
        MessageBoxA(program.window, "the file cannot be read", "alert", MB_OK | MB_ICONEXCLAMATION);
        return false;
    }
    FileSource bytes(file);
    Import import = {program, source, target};
    const bool saved = showImportDialog(program, bytes, sizeOf(source) <= smallFile, {save, &import}, notes);
    std::fclose(file);
    if (saved) std::memcpy(path, target, sizeof path);
    return saved;
}
