#pragma once

#include "batch/command_line.h"
#include "batch/complaint.h"
#include "batch/usage_line.h"

// The option --score-sql and what belongs to it.

// Also of the command sql.
constexpr OptionText dialectOption = {"--dialect", dialectWords, "what the engine understands (standard)"};
constexpr OptionText scoreOptions[] = {
    {"--score-sql", nullptr,
     "print what is told of each sample as SQL expressions, which score the\n"
     "rows of a table where it is: select *, EXPRESSIONS from TABLE"},
    dialectOption,
};

// Whether a kind, which may be null, has them.
bool hasExpressions(const AnalysisKind* kind);

// False and a complaint when the options do not go together.
bool checkScoreOptions(const CommandLine& line, Complaint& complaint);

// False when a run that succeeded has no expressions, which one line tells.
bool checkExpressions(const CommandLine& line, const TextBuffer& expressions);
