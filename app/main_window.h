#pragma once

#include "app/program.h"

// Registers the window class and creates, shows and paints the main window; false when either fails.
bool openMainWindow(Program& program, int showCommand);

// Opens the file at `path` as the "Open File" command does after its dialog.
void openNamedFile(Program& program, const char* path);
