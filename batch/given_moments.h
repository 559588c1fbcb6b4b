#pragma once

#include "batch/command_line.h"
#include "batch/complaint.h"

// A file of moments in the place of a data file.

// Whether the options go with moments, once all are parsed; false and a complaint.
bool checkMomentOptions(const CommandLine& line, Complaint& complaint);

// The same with the values of the analysis's options and the data: a group must be the one that the file has.
bool checkMomentFields(const CommandLine& line, const DataSet& data, const AnalysisOptions& options,
                       Complaint& complaint);

// What of it an analysis needs that the moments do not hold, in the words of a message; null when it is all
// there.
const char* lackingMoments(const CommandLine& line, const DataSet& data, const AnalysisOptions& options);
