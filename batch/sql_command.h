#pragma once

// The command `sql` with its arguments from the program's name on; returns the exit status.
int runSql(int count, char* const* arguments);
