#pragma once

#include <windows.h>

// The system's own words for an error, in a box captioned "error".
void showSystemError(HWND owner, DWORD error);
