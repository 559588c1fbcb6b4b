#include "app/system_error.h"

#include <cstdio>

void showSystemError(HWND owner, DWORD error) {
    char text[512] = "";
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        error, 0, text, sizeof text, nullptr);
    if (length == 0) std::snprintf(text, sizeof text, "error %lu", error);
    MessageBoxA(owner, text, "error", MB_OK | MB_ICONERROR);
}
