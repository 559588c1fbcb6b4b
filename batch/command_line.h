#pragma once

#include "analysis/run/analysis_kind.h"
#include "batch/picture.h"
#include "data/word_list.h"
#include "report/sql_text.h"

enum class ReportFormat { text, json, markdown, html };

// What options take that have words to choose from (data/word_list.h): those of `--missing` and `--format` in
// the order of MissingPolicy and ReportFormat.
constexpr const char* missingWords = "zero|omit|fail";
constexpr const char* formatWords = "text|json|markdown|html";
constexpr const char* divisorWords = "n-1|n";
constexpr const char* numericsWords = "classic|textbook";

// What the user asked for. Texts point into the arguments.
struct CommandLine {
    enum class Task { run, help, version };

    Task task = Task::run;
    const AnalysisKind* kind = nullptr; // null: the summary of the file
    const char* file = nullptr;
    bool isMoments = false;       // the file holds moments
    bool divisorIsN = false;      // of deviations and covariances in a typed matrix
    bool hasDivisor = false;      // it was given
    Block<const char*> excludes;  // names, comma-separated, in the order given
    const char* output = nullptr; // null: standard output
    ReportFormat format = ReportFormat::text;
    const char* shownPath = nullptr; // by the summary; null: that of the file
    const char* saved = nullptr;     // the file for the table with its sample columns
    bool scoresBySql = false;        // expressions are printed in the place of the report
    SqlDialect dialect = SqlDialect::standard;
    bool hasDialect = false; // it was given
    int clusters = 0;        // that samples are numbered by, or a tree is cut into; 0: not given
    int variableWidth = 0;   // 0: not given
    int labelWidth = 0;      // likewise
    int threads = 0;         // 0: as many as the machine has
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
inline std::string_view missingWord(MissingPolicy policy) {
    return wordOf(missingWords, static_cast<int>(policy) + 1);
}
inline std::string_view divisorWord(bool divisorIsN) {
    return wordOf(divisorWords, divisorIsN ? 2 : 1);
}
inline std::string_view numericsWord(const Numerics& numerics) {
    return wordOf(numericsWords, numerics.textbook ? 2 : 1);
}
