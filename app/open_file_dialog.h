#pragma once

#include "app/program.h"

// Asks for a data file; its path goes into the data set and the chosen filter becomes the source kind. False
// when cancelled.
bool showOpenFileDialog(Program& program);

void tellPathTooLong(const Program& program);
