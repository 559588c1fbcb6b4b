#include "app/system_error.h"

#include <cstdio>

void showSystemError(HWND owner, DWORD error) {
    char text[512] = "";
    // In one line.
    const DWORD flags =
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    const DWORD length = FormatMessageA(flags, nullptr, error, 0, text, sizeof text, nullptr);
    if (length == 0) std::snprintf(text, sizeof text, "error %lu", error);
    MessageBoxA(owner, text, "error", MB_OK | MB_ICONERROR);
}
