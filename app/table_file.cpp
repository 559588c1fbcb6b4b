#include "app/table_file.h"

#include "app/neighbour_file.h"
#include "app/open_file_dialog.h"

namespace {

// Which file a path leads to; false when there is none.
bool identify(const char* path, BY_HANDLE_FILE_INFORMATION& file) {
    const HANDLE handle = CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return false;
    const bool known = GetFileInformationByHandle(handle, &file) != 0;
    CloseHandle(handle);
    return known;
}

} // namespace

bool chooseTablePath(HWND owner, const Program& program, BOOL(WINAPI* ask)(OPENFILENAMEA*),
                     OPENFILENAMEA& dialog) {
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.nFilterIndex = 1;
    dialog.nMaxFile = pathSize;
    dialog.Flags |= OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (ask(&dialog) != 0) return true;
    if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL) tellPathTooLong(program);
    return false;
}

bool chooseTableTarget(HWND owner, const Program& program, char (&path)[pathSize]) {
    OPENFILENAMEA dialog = {};
    dialog.lpstrFilter = "csv file (*.csv)\0*.csv\0all files (*.*)\0*.*\0";
    dialog.lpstrDefExt = "csv";
    dialog.lpstrFile = path;
    dialog.Flags = OFN_PATHMUSTEXIST | OFN_OVERWRITEPROMPT;
    return chooseTablePath(owner, program, GetSaveFileNameA, dialog);
}

bool isSameFile(const char* path, const char* other) {
    BY_HANDLE_FILE_INFORMATION a, b;
    return identify(path, a) && identify(other, b) && a.dwVolumeSerialNumber == b.dwVolumeSerialNumber &&
           a.nFileIndexHigh == b.nFileIndexHigh && a.nFileIndexLow == b.nFileIndexLow;
}

std::uint64_t sizeOf(const char* path) {
    BY_HANDLE_FILE_INFORMATION file;
    return identify(path, file) ? std::uint64_t{file.nFileSizeHigh} << 32 | file.nFileSizeLow : 0;
}

FileSink::FileSink(const char* path)
    : file_(CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr)),
      error_(file_ == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS) {}

bool FileSink::write(std::string_view piece) {
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

DWORD FileSink::close() {
    if (file_ != INVALID_HANDLE_VALUE && CloseHandle(file_) == 0 && error_ == ERROR_SUCCESS)
        error_ = GetLastError();
    file_ = INVALID_HANDLE_VALUE;
    return error_;
}

DWORD writeWhole(const char* path, const TextBuffer& text) {
    char neighbour[MAX_PATH];
    DWORD error = createNeighbour(path, neighbour);
    if (error != ERROR_SUCCESS) return error;
    FileSink sink(neighbour);
    for (const std::string_view piece : text) sink.write(piece);
    error = sink.close();
    return putInPlace(neighbour, path, error);
}
