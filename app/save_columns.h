#pragma once

#include "app/program.h"

// Asks for a file and writes the analysed table into it with the columns of the last analysis.
void saveColumns(const Program& program);
