#pragma once

#include "app/program.h"

// Finds the settings file beside the executable and reads it, or sets the defaults when there is none.
void readSettingsFile(Program& program);

// Writes the settings file to a neighbour and puts it in place at once, so that it is never half-written.
// False after a message box when it cannot be written.
bool writeSettingsFile(Program& program);
