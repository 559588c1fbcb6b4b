#pragma once

#include <cstdio>

// Prints an option and what it does, which stands in a column of its own, below the option where that is
// longer. The line stays open for a default.
void printUsageLine(std::FILE* file, const char* usage, const char* help);
