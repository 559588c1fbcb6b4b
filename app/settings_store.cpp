#include "app/settings_store.h"

#include <cwchar>
#include <iterator>

#include "app/message_box.h"

namespace {

constexpr wchar_t fileName[] = L"Ombrivantel.par";
constexpr wchar_t neighbourEnd[] = L".new";

// Beside the executable; in the current folder when that is not known or its path is too long.
void buildPath(Program& program) {
    wchar_t* const path = program.settingsPath;
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    wchar_t* const separator = length > 0 && length < MAX_PATH ? std::wcsrchr(path, L'\\') : nullptr;
    wchar_t* name = separator != nullptr ? separator + 1 : path;
    if (name - path + std::ssize(fileName) > MAX_PATH) name = path;
    std::wmemcpy(name, fileName, std::size(fileName));
}

bool writeAll(const wchar_t* path, const unsigned char* bytes, DWORD count) {
    const HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    const bool complete = WriteFile(file, bytes, count, &written, nullptr) != 0 && written == count;
    return (CloseHandle(file) != 0) && complete;
}

} // namespace

void readSettingsFile(Program& program) {
    buildPath(program);
    unsigned char bytes[settingsFileSize] = {};
    DWORD count = 0;
    const HANDLE file = CreateFileW(program.settingsPath, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        if (ReadFile(file, bytes, sizeof bytes, &count, nullptr) == 0) count = 0;
        CloseHandle(file);
    }
    if (!decodeSettings(bytes, count, program.settingsFile)) setDefaultSettings(program.defaults());
}

bool writeSettingsFile(Program& program) {
    unsigned char bytes[settingsFileSize];
    encodeSettings(program.settingsFile, bytes);
    wchar_t neighbour[MAX_PATH + std::size(neighbourEnd)];
    std::wcscpy(neighbour, program.settingsPath);
    std::wcscat(neighbour, neighbourEnd);
    if (writeAll(neighbour, bytes, sizeof bytes) &&
        MoveFileExW(neighbour, program.settingsPath, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
            0) {
        return true;
    }
    DeleteFileW(neighbour);
    showAlert(program.window, "failed to open .par file");
    return false;
}
