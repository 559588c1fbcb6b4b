#pragma once

#include <windows.h>

// Moves a dialog over the middle of the window that owns it.
void centreOverOwner(HWND dialog);

// Gives a control of the dialog the focus, unless it is disabled.
void focusControl(HWND dialog, int identifier);
