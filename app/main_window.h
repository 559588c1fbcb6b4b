#pragma once

#include "analysis/run/start_arguments.h"
#include "app/program.h"

// Registers the window class and creates, shows and paints the main window; false when either fails.
bool openMainWindow(Program& program, int showCommand);

// Does what the program was started with, in its open window.
void startWork(Program& program, const StartArguments& start);
