#pragma once

#include "app/program.h"

// Registers the window class and creates, shows and paints the main window; false when either fails.
bool openMainWindow(Program& program, int showCommand);

// Opens the data file that was named when the program started or was dropped on the window.
void openNamedFile(Program& program, const char* name);
