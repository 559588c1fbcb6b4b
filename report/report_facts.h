#pragma once

#include "report/text_buffer.h"

// A file as it was when it was read.
struct FileFacts {
    const char* path = "";
    bool isKnown = false;   // size and time are; those of a pipe never are
    long long size = 0;     // bytes
    long long modified = 0; // seconds since 1970, UTC
};

// What was run, beside what the report says. A list of texts has a NUL behind each.
struct ReportFacts {
    std::string_view program;
    std::string_view version;
    std::string_view kind;     // as a command line names it
    std::string_view numerics; // likewise
    FileFacts file;
    long long samples;
    std::string_view variables;
    std::string_view excluded;
    std::string_view missing; // what is done about cells that are missing, likewise
    long long missingCells;
    long long samplesLeftOut;   // because of them
    std::string_view arguments; // of a command line that prints the report
    std::string_view status;
};

inline void addToList(TextBuffer& list, std::string_view text) {
    list.append(text);
    list.append({"\0", 1});
}
