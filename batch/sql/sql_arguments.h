#pragma once

#include <cstdio>
#include <span>

#include "batch/command_line.h"
#include "batch/complaint.h"
#include "batch/usage_line.h"
#include "report/sql_text.h"

// What the user asked `sql` for. Texts point into the arguments.
struct SqlCommand {
    bool help = false;
    CommandLine line;           // the kind, the options that it takes itself, the dialect and the output
    Block<const char*> columns; // lists of names, comma-separated
    const char* table = nullptr;
    const char* where = nullptr;      // null: every row
    const char* categories = nullptr; // of the second column of a cross table; null: not given
};

// Reads the arguments behind "sql"; false and a complaint when they are wrong.
bool parseSql(int count, char* const* argumentTexts, SqlCommand& command, Complaint& complaint);

// Appends the table and the condition of the rows, each behind `indent`, as the user wrote them.
void writeFrom(const SqlCommand& command, std::string_view indent, SqlText& sql);

// What the user gave for an option of the kind, by its name without "--"; null: nothing.
const char* givenValue(const CommandLine& line, std::string_view option);

// What it takes besides the options of the kind, in the order of the help.
std::span<const OptionText> sqlOptions();

void printSqlHelp(std::FILE* file);
