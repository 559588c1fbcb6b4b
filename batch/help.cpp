#include "batch/help.h"

#include "batch/assignments.h"
#include "batch/field_values.h"
#include "batch/saved_columns.h"
#include "batch/usage_line.h"

namespace {

constexpr const char* commonOptions =
    "  --exclude NAME[,NAME...]  leave variables out, by name or by column number as #3\n"
    "  --variable-width N        variable names and columns are N wide (11)\n"
    "  --label-width N           sample labels are N wide (15)\n"
    "  --numerics classic|textbook\n"
    "                            comparable with earlier reports, or as in textbooks (classic)\n"
    "  --output FILE             write the report to FILE instead of standard output\n"
    "  --format text|json|markdown|html\n"
    "                            what the report is written in (text)\n"
    "  --path TEXT               the path that the summary shows\n"
    "  --missing zero|omit|fail\n"
    "                            count cells that are no numbers as what they begin with or 0, leave\n"
    "                            their samples out, or fail (zero)\n"
    "  --strict                  fail when there is a warning about the file\n"
    "  --help                    this text, or that of an analysis\n"
    "  --version                 the version\n";

// The value that an option has when it is not given; nothing for a flag or a variable.
void printDefault(std::FILE* file, const OptionField& field, AnalysisOptions& options) {
    if (field.type == OptionType::choice) {
        const std::size_t chosen = static_cast<std::size_t>(wholeOption(options, field));
        if (chosen < field.choices.size()) std::fprintf(file, " (%s)", field.choices[chosen]);
    } else if (field.type == OptionType::listedChoice) {
        std::fprintf(file, " (%d)", wholeOption(options, field) + 1);
    } else if (field.type == OptionType::real) {
        std::fprintf(file, " (%g)", realOption(options, field));
    } else if (field.type == OptionType::wholeNumber && field.mostOfData == nullptr) {
        std::fprintf(file, " (%d)", wholeOption(options, field));
    }
}

void printField(std::FILE* file, const OptionField& field, AnalysisOptions& options) {
    if (field.name == nullptr) return;
    char value[400];
    describeValue(field, value, sizeof value);
    char usage[480];
    std::snprintf(usage, sizeof usage, "--%s%s %s", field.type == OptionType::flag ? "[no-]" : "", field.name,
                  value);
    printUsageLine(file, usage, field.help);
    printDefault(file, field, options);
    std::fprintf(file, "\n");
}

} // namespace

void printHelp(std::FILE* file, const AnalysisKind* kind) {
    if (kind != nullptr) {
        Settings settings;
        setDefaultSettings(settings);
        AnalysisOptions options;
        startOptions(options, settings);
        std::fprintf(file, "usage: %s %s [options] FILE.csv\n\n%s: %s\n\noptions of this analysis:\n",
                     programName, kind->batchName, kind->batchName, kind->menuText);
        for (const OptionField& field : kind->analysis->fields) printField(file, field, options);
        if (numbersClusters(kind)) printClustersHelp(file);
        for (const AssignmentOption& option : assignmentOptions()) {
            if (!option.isTakenBy(*kind)) continue;
            char usage[80];
            std::snprintf(usage, sizeof usage, "--%s %s", option.name, assignmentUsage);
            printUsageLine(file, usage, option.help);
            std::fprintf(file, "; may be repeated\n");
        }
        if (kind->hasSampleColumns) {
            std::fprintf(file, "\noptions of saved columns:\n");
            printSaveHelp(file);
        }
        if (kind->graph != GraphRule::never) {
            std::fprintf(file, "\noptions of its picture:\n");
            printPictureHelp(file);
        }
        std::fprintf(file, "\noptions of every analysis:\n%s", commonOptions);
        return;
    }
    std::fprintf(
        file,
        "usage: %s KIND [options] FILE.csv\n"
        "       %s import [options] FILE [--output TABLE.csv]\n\n"
        "Prints the report of an analysis of a comma-separated file: samples in rows, variables in\n"
        "columns, names in the first row and labels in the first column. import makes such a file of a\n"
        "table that another program saved: %s import --help\n\n"
        "kinds:\n"
        "  summary            the file as it was read\n",
        programName, programName, programName);
    for (const AnalysisKind& each : analysisKinds()) {
        if (each.analysis != nullptr) std::fprintf(file, "  %-18s %s\n", each.batchName, each.menuText);
    }
    std::fprintf(
        file,
        "\noptions:\n%s\n"
        "Each kind has options of its own: %s KIND --help\n"
        "The status line goes to standard error. Exit status: 0 success, 1 the file or the analysis\n"
        "failed (the report says why), 2 wrong command line.\n",
        commonOptions, programName);
}
