#pragma once

#include "app/program.h"
#include "report/print_pages.h"

// The page set-up dialog; what it chooses becomes the printer's own setting. False when cancelled or failed.
bool pageSetUp(Program& program);

// What a print or page set-up dialog leaves behind; either may be null.
void releaseDialogMemory(HGLOBAL mode, HGLOBAL names);

PrinterPage printerPage(HDC printer);

// Makes a screen wrap its lines as the default printer's page will.
void fitScreenToPrinter(Program& program, int screen);
