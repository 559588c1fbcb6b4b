#pragma once

#include "app/program.h"

// "Copy Command Line": puts the command that repeats the last analysis on the clipboard, with the full path
// of the batch runner where that stands beside the program.
void copyCommandLine(Program& program);

// Greys its item while there is none.
void showCommandLineItem(Program& program);
