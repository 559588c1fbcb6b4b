#pragma once

#include "analysis/run/analysis_kind.h"
#include "batch/picture.h"

constexpr const char* programName = "ombrivantel-batch";

// What the user asked for. Texts point into the arguments.
struct CommandLine {
    enum class Task { run, help, version };

    Task task = Task::run;
    const AnalysisKind* kind = nullptr; // null: the summary of the file
    const char* file = nullptr;
    const char* exclude = nullptr; // names, comma-separated
    const char* output = nullptr;
    const char* shownPath = nullptr;
    int variableWidth = 0; // 0: not given
    int labelWidth = 0;
    bool strict = false;

    // Of the options of the analysis: the last value given to each field, null when there is none.
    static constexpr int mostFields = 32;
    const char* values[mostFields] = {};

    // Of the options that can be repeated (batch/assignments.h), in the order given.
    Block<const char*> degrees;
    Block<const char*> predictions;

    PictureOptions picture;
};

// A wrong command line: one line that says what is wrong.
struct Complaint {
    char text[1000] = "";

    [[gnu::format(printf, 2, 3)]] void say(const char* format, ...);
    bool any() const { return text[0] != '\0'; }
};

// Reads the arguments; false and a complaint when they are wrong. Names of variables are left as they are:
// they mean nothing before the file is read.
bool parseCommandLine(int count, char** argumentTexts, CommandLine& line, Complaint& complaint);

// Sets the exclusion list from `--exclude` and the loaded header.
bool applyExclude(const char* names, DataSet& data, Complaint& complaint);

// Puts the values of the analysis's fields and the degrees into the options; false and a complaint when a
// variable is not in the data, when one that must be named is not, or when the analysis refuses the values.
bool applyFields(const CommandLine& line, const DataSet& data, AnalysisOptions& options,
                 Complaint& complaint);
