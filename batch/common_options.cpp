#include "batch/common_options.h"

#include "batch/command_line.h"

namespace {

constexpr OptionText options[] = {
    {"--exclude", "NAME[,NAME...]", "leave variables out, by name or by column number as #3"},
    {"--variable-width", "N", "variable names and columns are N wide (11)"},
    {"--label-width", "N", "sample labels are N wide (15)"},
    {"--numerics", numericsWords, "comparable with earlier reports, or as in textbooks (classic)"},
    {"--output", "FILE", "write the report to FILE; -: standard output"},
    {"--format", formatWords, "what the report is written in (text)"},
    {"--path", "TEXT", "the path that the summary shows"},
    {"--missing", missingWords,
     "count cells that are no numbers as what they begin with or 0, leave\n"
     "their samples out, or fail (zero)"},
    {"--moments", "FILE.csv",
     "read moments in the place of a data file: what a statement of sql\n"
     "gives, or a matrix of correlations or covariances"},
    {"--divisor", divisorWords, "of deviations and covariances in such a matrix (n-1)"},
    {"--strict", nullptr, "fail when there is a warning about the file"},
    {"--threads", "N", "compute with up to N threads at once, 1 to 256 (as many as the machine has)"},
    {"--help", nullptr, "this text, or that of an analysis; also help KIND", "-h"},
    {"--version", nullptr, "the version", "-V"},
};

constexpr const char* words[] = {"summary", "import", "sql", "run", "help"};

} // namespace

std::span<const OptionText> commonOptions() {
    return options;
}

std::span<const char* const> commandWords() {
    return words;
}
