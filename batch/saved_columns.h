#pragma once

#include "batch/command_line.h"
#include "batch/complaint.h"
#include "batch/usage_line.h"

// The option --save and what belongs to it.

// Whether --clusters is an option of this kind, which may be null.
bool numbersClusters(const AnalysisKind* kind);

// Takes the value of --clusters; false and a complaint when it is none.
bool parseClusters(const char* text, int& clusters, Complaint& complaint);

constexpr OptionText clustersOption = {
    "--clusters", "N", "number the samples by N clusters with --save, cut the tree into them with --graph"};
constexpr OptionText saveOption = {"--save", "FILE.csv",
                                   "write the table to FILE.csv with what the analysis tells of each sample"};

// False and a complaint when the options do not go together, as far as is known without the data.
bool checkSaveOptions(const CommandLine& line, Complaint& complaint);

// The same once the data and the values of all options are known.
bool checkSaving(const CommandLine& line, const DataSet& data, const AnalysisOptions& options,
                 Complaint& complaint);

// Fills an unallocated text with the table to save after a run. A complaint, with success, when it could not
// be read again. Returns success or outOfMemory.
[[nodiscard]] ErrorCode composeSavedTable(const CommandLine& line, const AnalysisRun& run, TextBuffer& text,
                                          Complaint& complaint);
