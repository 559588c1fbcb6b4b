#pragma once

#include "batch/command_line.h"
#include "batch/complaint.h"

// Sets the exclusion list from all `--exclude` and the loaded header.
bool applyExcludes(const CommandLine& line, DataSet& data, Complaint& complaint);

// Puts the values of the analysis's fields and the degrees into the options; false and a complaint when a
// variable is not in the data, when one that must be named is not, or when the analysis refuses the values.
bool applyFields(const CommandLine& line, const DataSet& data, AnalysisOptions& options,
                 Complaint& complaint);
