#pragma once

#include "app/program.h"
#include "numeric/block.h"

// Asks for a table of another program, shows what is found in it, and saves it in the program's own form as
// the user says. True when that is done: `path` is then that of the new table, and `notes` are what the
// import tells, in the code page.
bool showTableImport(const Program& program, char (&path)[pathSize], Block<char>& notes);
