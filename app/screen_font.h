#pragma once

#include "app/program.h"

// The font dialog for a screen: for its selection, or for all of its text.
void chooseScreenFont(Program& program, int screen, bool selectionOnly);
