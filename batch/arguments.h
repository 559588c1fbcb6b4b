#pragma once

#include "batch/command_line.h"
#include "batch/complaint.h"

// Reads the arguments; false and a complaint when they are wrong. Names of variables are left as they are:
// they mean nothing before the file is read.
bool parseCommandLine(int count, char** argumentTexts, CommandLine& line, Complaint& complaint);
