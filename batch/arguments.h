#pragma once

#include "batch/argument_list.h"
#include "batch/command_line.h"
#include "batch/complaint.h"

// Reads the arguments; false and a complaint when they are wrong. Names of variables are left as they are:
// they mean nothing before the file is read.
bool parseCommandLine(int count, char* const* argumentTexts, CommandLine& line, Complaint& complaint);

// The kind of this name; null and a complaint when there is none, which looks among `others`, too, for what
// may be meant.
const AnalysisKind* requireKind(const char* word, std::span<const char* const> others, Complaint& complaint);

// Takes an option of the line's kind, or of every kind, with its value.
Match takeAnalysisOption(const Option& option, Arguments& arguments, CommandLine& line, Complaint& complaint);
