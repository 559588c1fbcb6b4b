#pragma once

#include <cstdio>

// Prints an option and what it does, which stands in a column of its own, below the option where that is
// longer; lines of the text stand below each other. The last one stays open for a default.
void printUsageLine(std::FILE* file, const char* usage, const char* help);

// What the help says of an option.
struct OptionText {
    const char* name;  // with "--"
    const char* value; // what it takes, words with "|" between them; null for a flag
    const char* help;
    const char* letter = nullptr; // the short form
};

void printOption(std::FILE* file, const OptionText& option);
