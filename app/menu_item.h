#pragma once

#include <windows.h>

// An item of the main window's menu, by its command: greyed or not, and with its check mark or without.
void enableItem(HWND window, int command, bool enabled);
void checkItem(HWND window, int command, bool checked);
