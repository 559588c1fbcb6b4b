#include "app/settings_store.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr const char* fileName = "Ombrivantel.par";

void buildPath(Program& program) {
    char module[MAX_PATH] = "";
    const DWORD length = GetModuleFileNameA(nullptr, module, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) module[0] = '\0';
    char* separator = std::strrchr(module, '\\');
    if (separator != nullptr) separator[1] = '\0';
    std::snprintf(program.settingsPath, sizeof program.settingsPath, "%s%s", module, fileName);
}

bool writeAll(const char* path, const unsigned char* bytes, DWORD count) {
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
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
    const HANDLE file = CreateFileA(program.settingsPath, GENERIC_READ, FILE_SHARE_READ, nullptr,
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
    char neighbour[MAX_PATH + 8];
    std::snprintf(neighbour, sizeof neighbour, "%s.new", program.settingsPath);
    if (writeAll(neighbour, bytes, sizeof bytes) &&
        MoveFileExA(neighbour, program.settingsPath, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
            0) {
        return true;
    }
    DeleteFileA(neighbour);
    MessageBoxA(program.window, "failed to open .par file", "alert", MB_OK | MB_ICONEXCLAMATION);
    return false;
}
