#pragma once

#include "batch/usage_line.h"

constexpr OptionText keepGoingOption = {"--keep-going", nullptr, "go on after a command that fails"};

// Runs a command line; returns its exit status.
using RunCommand = int(int count, char* const* arguments);

// Runs `run`: the commands of a file, one a line, each by `runCommand` as the whole program would run it,
// with paths relative to the file. Ends at the first one that fails, unless asked to keep going. Returns the
// exit status of the first one that failed, or 0; 1 for a file that cannot be read, 2 for a wrong command
// line and for a file with a line that is no command, of which nothing is run.
int runFile(int count, char* const* arguments, RunCommand* runCommand);
