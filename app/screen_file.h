#pragma once

#include "app/program.h"

// Both screens share one path and one file type, rich text or plain text.

// Saves a screen to the shared path, asking for one when there is none. False when nothing was written.
bool saveScreen(Program& program, int screen);
void saveScreenAs(Program& program, int screen);

// Replaces a screen's contents by a file.
void openRichText(Program& program, int screen);
