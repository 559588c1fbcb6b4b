#ifdef _WIN32

#include "batch/file_system.h"

#include <cstring>
#include <cwchar>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace {

constexpr int mostNeighbours = 8;

// Of file times, which begin with 1601.
constexpr long long ticksPerSecond = 10000000;
constexpr long long secondsBefore1970 = 11644473600;

constexpr int mostPath = 4096;

struct WidePath {
    wchar_t text[mostPath] = L"";
};

WidePath unfinished[mostNeighbours]; // what Ctrl+C removes; an empty path is a free place

BOOL WINAPI removeUnfinished(DWORD) {
    for (const WidePath& each : unfinished) {
        if (each.text[0] != L'\0') DeleteFileW(each.text);
    }
    return FALSE; // and end the program as always
}

bool widen(const char* path, WidePath& wide) {
    return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path, -1, wide.text, mostPath) > 0;
}

bool narrow(const wchar_t* wide, FilePath& path) {
    return WideCharToMultiByte(CP_UTF8, 0, wide, -1, path.text, sizeof path.text, nullptr, nullptr) > 0;
}

void addUnfinished(const WidePath& path) {
    SetConsoleCtrlHandler(removeUnfinished, TRUE);
    for (WidePath& each : unfinished) {
        if (each.text[0] != L'\0') continue;
        std::wmemcpy(each.text + 1, path.text + 1, mostPath - 1);
        each.text[0] = path.text[0];
        return;
    }
}

void removeFromUnfinished(const WidePath& path) {
    for (WidePath& each : unfinished) {
        if (std::wcscmp(each.text, path.text) == 0) each.text[0] = L'\0';
    }
}

HANDLE openToLook(const wchar_t* path) {
    return CreateFileW(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

bool fullPath(const WidePath& path, WidePath& full) {
    const DWORD length = GetFullPathNameW(path.text, mostPath, full.text, nullptr);
    return length > 0 && length < mostPath;
}

// The path without links, of a file that is there.
bool finalPath(const WidePath& path, WidePath& final) {
    const HANDLE file = openToLook(path.text);
    if (file == INVALID_HANDLE_VALUE) return false;
    const DWORD length = GetFinalPathNameByHandleW(file, final.text, mostPath, FILE_NAME_NORMALIZED);
    CloseHandle(file);
    return length > 0 && length < mostPath;
}

} // namespace

FileType typeOf(const char* path) {
    WidePath wide;
    if (!widen(path, wide)) return FileType::missing;
    const DWORD attributes = GetFileAttributesW(wide.text);
    const bool isFound = attributes != INVALID_FILE_ATTRIBUTES;
    const bool isDenied = !isFound && GetLastError() == ERROR_ACCESS_DENIED;
    if (isFound && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return FileType::folder;
    // NUL, CON and the like have no attributes, or those of a file.
    const HANDLE file =
        CreateFileW(wide.text, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        const DWORD type = GetFileType(file);
        CloseHandle(file);
        if (type == FILE_TYPE_CHAR || type == FILE_TYPE_PIPE) return FileType::device;
    }
    if (isDenied) return FileType::unknown;
    return isFound ? FileType::regular : FileType::missing;
}

bool followLinks(const char* path, FilePath& file) {
    WidePath wide, final;
    if (!widen(path, wide)) return false;
    return narrow(finalPath(wide, final) ? final.text : wide.text, file);
}

bool isSameFile(const char* a, const char* b) {
    WidePath wideA, wideB, fullA, fullB;
    if (!widen(a, wideA) || !widen(b, wideB)) return false;
    if (typeOf(a) == FileType::device || typeOf(b) == FileType::device) return false;
    const bool foundA = finalPath(wideA, fullA), foundB = finalPath(wideB, fullB);
    if (foundA != foundB) return false;
    if (!foundA && (!fullPath(wideA, fullA) || !fullPath(wideB, fullB))) return false;
    return CompareStringOrdinal(fullA.text, -1, fullB.text, -1, TRUE) == CSTR_EQUAL;
}

bool findSizeAndTime(const char* path, long long& size, long long& modified) {
    WidePath wide;
    WIN32_FILE_ATTRIBUTE_DATA found;
    if (typeOf(path) != FileType::regular || !widen(path, wide) ||
        GetFileAttributesExW(wide.text, GetFileExInfoStandard, &found) == 0)
        return false;
    size = static_cast<long long>(found.nFileSizeHigh) << 32 | found.nFileSizeLow;
    const long long ticks = static_cast<long long>(found.ftLastWriteTime.dwHighDateTime) << 32 |
                            found.ftLastWriteTime.dwLowDateTime;
    modified = ticks / ticksPerSecond - secondsBefore1970;
    return true;
}

bool enterFolderOf(const char* path) {
    WidePath wide, full;
    if (!widen(path, wide) || !fullPath(wide, full)) return false;
    wchar_t* const slash = std::wcsrchr(full.text, L'\\');
    if (slash == nullptr) return false;
    slash[1] = L'\0'; // a drive keeps its own
    return SetCurrentDirectoryW(full.text) != 0;
}

std::FILE* openToRead(const char* path) {
    WidePath wide;
    return widen(path, wide) ? _wfopen(wide.text, L"rb") : nullptr;
}

std::FILE* openDevice(const char* path) {
    WidePath wide;
    return widen(path, wide) ? _wfopen(wide.text, L"wb") : nullptr;
}

std::FILE* createNeighbour(const char* target, FilePath& neighbour) {
    WidePath wide;
    if (!widen(target, wide)) return nullptr;
    const DWORD attributes = GetFileAttributesW(wide.text);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) return nullptr;
    HANDLE handle = INVALID_HANDLE_VALUE;
    for (int number = 0; handle == INVALID_HANDLE_VALUE && number < 100; ++number) {
        const int length = std::snprintf(neighbour.text, sizeof neighbour.text, "%s.%lu-%d.new", target,
                                         GetCurrentProcessId(), number);
        if (length < 0 || static_cast<std::size_t>(length) >= sizeof neighbour.text) return nullptr;
        if (!widen(neighbour.text, wide)) return nullptr;
        // Shared for deletion, so that an interrupt can remove it while it is open.
        handle = CreateFileW(wide.text, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                             CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_EXISTS) return nullptr;
    }
    if (handle == INVALID_HANDLE_VALUE) return nullptr;
    addUnfinished(wide);
    const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_WRONLY | _O_BINARY);
    std::FILE* file = descriptor >= 0 ? _fdopen(descriptor, "wb") : nullptr;
    if (file == nullptr) {
        if (descriptor >= 0) {
            _close(descriptor);
        } else {
            CloseHandle(handle);
        }
        DeleteFileW(wide.text);
        removeFromUnfinished(wide);
    }
    return file;
}

bool replaceByNeighbour(std::FILE* file, const FilePath& neighbour, const char* target) {
    WidePath from, to;
    const bool named = widen(neighbour.text, from) && widen(target, to);
    const bool synced = std::fflush(file) == 0 && std::ferror(file) == 0 && _commit(_fileno(file)) == 0;
    const bool closed = std::fclose(file) == 0;
    const bool moved =
        named && synced && closed &&
        MoveFileExW(from.text, to.text, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    if (!moved) DeleteFileW(from.text);
    removeFromUnfinished(from);
    return moved;
}

void discardNeighbour(std::FILE* file, const FilePath& neighbour) {
    std::fclose(file);
    WidePath wide;
    if (!widen(neighbour.text, wide)) return;
    DeleteFileW(wide.text);
    removeFromUnfinished(wide);
}

bool hasCodePage() {
    return true;
}

bool writeInCodePage(const char* text, char* converted, int size) {
    WidePath wide;
    if (!widen(text, wide)) return false;
    BOOL lacks = FALSE;
    return WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.text, -1, converted, size, nullptr,
                               &lacks) > 0 &&
           lacks == FALSE;
}

#endif
