#pragma once

#include <windows.h>

#include "numeric/block.h"

// Between UTF-8 and the system's code page.

// False where the code page lacks a character or the text is too long.
bool writeInCodePage(const char* text, char* converted, int size);

// A text of any length, "?" for what the code page lacks. Success or outOfMemory.
[[nodiscard]] ErrorCode convertToCodePage(const char* text, Block<char>& converted);

// The text of a control in UTF-8; cut to nothing when it is longer.
void takeText(HWND control, char* text, int size);
