#include "batch/exit_status.h"

#include <cstdio>

ExitStatus refuse(const Complaint& complaint, const char* command) {
    std::fprintf(stderr, "%s: %s\ntry: %s%s%s --help\n", programName, complaint.text, programName,
                 command != nullptr ? " " : "", command != nullptr ? command : "");
    return exitWrongCommandLine;
}

ExitStatus fail(const char* what, const char* path) {
    std::fprintf(stderr, "error : %s '%s'\n", what, path != nullptr ? path : "standard output");
    return exitFailure;
}

ExitStatus failWithoutMemory() {
    std::fprintf(stderr, "error : failed to allocate memory for data.\n");
    return exitFailure;
}

ExitStatus endPrinting() {
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? exitSuccess : exitFailure;
}
