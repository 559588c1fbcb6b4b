#include "app/message_box.h"

#include <cstdio>

void showAlert(HWND owner, const char* text) {
    MessageBoxA(owner, text, "alert", MB_OK | MB_ICONEXCLAMATION);
}

void showError(HWND owner, const char* text) {
    MessageBoxA(owner, text, "error", MB_OK | MB_ICONERROR);
}

void showOutOfMemory(HWND owner) {
    showAlert(owner, "failed to allocate memory for data");
}

void showSystemError(HWND owner, DWORD error) {
    char text[512] = "";
    // In one line.
    const DWORD flags =
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    const DWORD length = FormatMessageA(flags, nullptr, error, 0, text, sizeof text, nullptr);
    if (length == 0) std::snprintf(text, sizeof text, "error %lu", error);
    showError(owner, text);
}
