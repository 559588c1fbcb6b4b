#pragma once

// Runs `import`: reads a table that another program saved and writes it in the program's own form. Returns
// the exit status: 0, 1 when the file fails, 2 for a wrong command line.
int runImport(int count, char* const* arguments);
