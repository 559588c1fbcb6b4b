#pragma once

#include "analysis/run/analysis_kind.h"
#include "batch/picture.h"
#include "report/sql_text.h"

// What `--missing` takes, in the order of MissingPolicy.
constexpr const char* missingWords[] = {"zero", "omit", "fail"};

// What `--divisor` takes, N last.
constexpr const char* divisorWords[] = {"n-1", "n"};

// What `--format` takes, in the order of ReportFormat.
enum class ReportFormat { text, json, markdown, html };
constexpr const char* formatWords[] = {"text", "json", "markdown", "html"};

// What the user asked for. Texts point into the arguments.
struct CommandLine {
    enum class Task { run, help, version };

    Task task = Task::run;
    const AnalysisKind* kind = nullptr; // null: the summary of the file
    const char* file = nullptr;
    bool isMoments = false;      // the file holds moments
    bool divisorIsN = false;     // of deviations and covariances in a typed matrix
    bool hasDivisor = false;     // it was given
    Block<const char*> excludes; // names, comma-separated, in the order given
    const char* output = nullptr;
    ReportFormat format = ReportFormat::text;
    const char* shownPath = nullptr;
    const char* saved = nullptr; // the file for the table with its sample columns
    bool scoresBySql = false;    // expressions are printed in the place of the report
    bool hasDialect = false;     // it was given
    SqlDialect dialect = SqlDialect::standard;
    int clusters = 0;      // in which samples are numbered there
    int variableWidth = 0; // 0: not given
    int labelWidth = 0;
    int threads = 0; // 0: as many as the machine has
    bool strict = false;
    MissingPolicy missing = MissingPolicy::zero;
    const Numerics* numerics = nullptr; // null: not given

    // Of the options of the analysis: the last value given to each field, null when there is none.
    static constexpr int mostFields = 32;
    const char* values[mostFields] = {};

    // Of the options that can be repeated (batch/assignments.h), in the order given.
    Block<const char*> degrees;
    Block<const char*> predictions;

    PictureOptions picture;
};

// The words that a command line has for what was chosen.
inline const char* kindWord(const CommandLine& line) {
    return line.kind != nullptr ? line.kind->batchName : "summary";
}
inline const char* missingWord(MissingPolicy policy) {
    return missingWords[static_cast<int>(policy)];
}
inline const char* numericsWord(const Numerics& numerics) {
    return numerics.textbook ? "textbook" : "classic";
}
