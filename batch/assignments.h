#pragma once

#include <string_view>

#include "analysis/run/prediction_entry.h"
#include "batch/command_line.h"
#include "batch/complaint.h"

// Options whose value is "NAME=X[,NAME=X...]" and that can be given again and again.
struct AssignmentOption {
    const char* name; // without "--"
    const char* help;
    bool (*isTakenBy)(const AnalysisKind& kind);
    Block<const char*> CommandLine::*texts; // what was given, one after the other
};

std::span<const AssignmentOption> assignmentOptions();

constexpr const char* assignmentUsage = "NAME=X[,NAME=X...]";

struct Assignment {
    std::string_view name;
    double value;
};

// Takes the next assignment off `rest`, which ends with its text, and leaves the comma behind it; false when
// it is malformed.
bool takeAssignment(std::string_view& rest, Assignment& assignment);

// Calls `use` with each assignment of a text; false once one is malformed or `use` is false.
template <class Use> bool forEachAssignment(const char* text, Use use) {
    std::string_view rest = text;
    for (;;) {
        Assignment assignment;
        if (!takeAssignment(rest, assignment) || !use(assignment)) return false;
        if (rest.empty()) return true;
        rest.remove_prefix(1);
    }
}

// Whether a text has this form; names of variables are not looked up.
bool isAssignmentList(const char* text);

// Puts the degrees into the slots of the options; false and a complaint when a variable is not in the data or
// there are more than the slots.
bool applyDegrees(const CommandLine& line, const DataSet& data, AnalysisOptions& options,
                  Complaint& complaint);

// False and a complaint when a prediction names what is no explanatory variable under these options.
bool checkPredictions(const CommandLine& line, const DataSet& data, const AnalysisOptions& options,
                      Complaint& complaint);

// Sets the flags (by column of the cell table) of the variables that checked predictions name.
void flagPredicted(const CommandLine& line, const DataSet& data, Block<std::int32_t>& flags);

// Enters the values of one checked text.
void enterValues(const char* text, const DataSet& data, PredictionEntry& entry);
