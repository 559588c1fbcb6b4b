#pragma once

#include "app/program.h"

#include <richedit.h>

// What every change of a screen's font sets.
constexpr DWORD screenFormatMask = CFM_BOLD | CFM_ITALIC | CFM_UNDERLINE | CFM_STRIKEOUT | CFM_SIZE |
                                   CFM_COLOR | CFM_FACE | CFM_OFFSET | CFM_CHARSET;

// The two rich-edit screens and the status bar with its progress bar.

// Loads the rich-edit library and creates the children and the progress bar; false after a message box when
// one of the children is missing.
bool createScreens(Program& program);

// Places the children in the client area of the main window.
void layOutScreens(Program& program);

void destroyScreens(Program& program);

// Shows a text in one of the screens, or its first line in the status bar.
void showText(Program& program, int screen, const char* text);
