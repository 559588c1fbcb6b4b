#pragma once

#include "batch/command_line.h"
#include "report/text_buffer.h"

// Appends the arguments that print the report again as text, each with a NUL behind it: the kind, the options
// that were given in the order of the help, each value an argument of its own, and the file.
void listArguments(const CommandLine& line, TextBuffer& texts);
