#pragma once

#include "app/program.h"

// Prints the whole text of a screen, page by page with numbered footers, after the print dialog.
void printScreen(Program& program, int screen);
