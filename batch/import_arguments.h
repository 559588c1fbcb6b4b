#pragma once

#include <cstdio>
#include <span>

#include "batch/complaint.h"
#include "batch/usage_line.h"
#include "data/import/import_options.h"

// What the user asked `import` for. Texts point into the arguments.
struct ImportCommand {
    bool help = false;
    const char* file = nullptr;     // "-": standard input
    const char* output = nullptr;   // null: standard output
    const char* codebook = nullptr; // null: none
    ImportOptions options;
};

// Reads the arguments behind "import"; false and a complaint when they are wrong.
bool parseImport(int count, char* const* argumentTexts, ImportCommand& command, Complaint& complaint);

// What it takes, in the order of the help.
std::span<const OptionText> importOptions();

void printImportHelp(std::FILE* file);
