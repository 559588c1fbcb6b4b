#pragma once

#include "batch/complaint.h"

// How the program ends, with what one line on standard error says of it.
enum ExitStatus { exitSuccess = 0, exitFailure = 1, exitWrongCommandLine = 2 };

// A wrong command line; the help to try is that of a command or kind, null: of the program.
ExitStatus refuse(const Complaint& complaint, const char* command);

// A file that cannot be read or written, as `what` says; null: standard output.
ExitStatus fail(const char* what, const char* path);
ExitStatus failWithoutMemory();

// A text that was printed: failure, without a line, unless all of it went to standard output.
ExitStatus endPrinting();
