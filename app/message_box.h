#pragma once

#include <windows.h>

// Boxes with "OK" alone over the window that owns them: "alert" for what the user can go on from, "error" for
// what has failed.
void showAlert(HWND owner, const char* text);
void showError(HWND owner, const char* text);

// An alert that memory for the data is lacking.
void showOutOfMemory(HWND owner);
// The system's own words for an error of its own.
void showSystemError(HWND owner, DWORD error);
