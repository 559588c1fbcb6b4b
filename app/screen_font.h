#pragma once

#include "app/program.h"

#include <richedit.h>

// The font dialog for a screen: for its selection, or for all of its text.
void chooseScreenFont(Program& program, int screen, bool selectionOnly);

// The logical font of a character format on a device of so many pixels per inch.
LOGFONTA logicalFont(const CHARFORMATA& format, int perInch);
