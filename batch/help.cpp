#include "batch/help.h"

#include "batch/assignments.h"
#include "batch/common_options.h"
#include "batch/field_values.h"
#include "batch/saved_columns.h"
#include "batch/score_sql.h"
#include "batch/usage_line.h"

namespace {

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

void printCommonOptions(std::FILE* file) {
    for (const OptionText& option : commonOptions()) printOption(file, option);
}

void printKindHelp(std::FILE* file, const AnalysisKind& kind) {
    Settings settings;
    setDefaultSettings(settings);
    AnalysisOptions options;
    startOptions(options, settings);
    std::fprintf(file,
                 "usage: %s %s [options] FILE.csv\n\n%s: %s\n\nexample:\n  %s %s %s\n\n"
                 "options of this analysis:\n",
                 programName, kind.batchName, kind.batchName, kind.batchTitle, programName, kind.batchName,
                 kind.example);
    for (const OptionField& field : kind.analysis->fields) printField(file, field, options);
    if (numbersClusters(&kind)) printOption(file, clustersOption);
    for (const AssignmentOption& option : assignmentOptions()) {
        if (!option.isTakenBy(kind)) continue;
        char usage[80];
        std::snprintf(usage, sizeof usage, "--%s %s", option.name, assignmentUsage);
        printUsageLine(file, usage, option.help);
        std::fprintf(file, "; may be repeated\n");
    }
    if (kind.hasSampleColumns) {
        std::fprintf(file, "\noptions of saved columns:\n");
        printOption(file, saveOption);
    }
    if (hasExpressions(&kind)) {
        std::fprintf(file, "\noptions of scoring in a database:\n");
        for (const OptionText& option : scoreOptions) printOption(file, option);
    }
    if (kind.graph != GraphRule::never || !picturesOf(kind).empty()) {
        std::fprintf(file, "\noptions of its picture:\n");
        printPictureHelp(file, kind);
    }
    std::fprintf(file, "\noptions of every analysis:\n");
    printCommonOptions(file);
}

void printProgramHelp(std::FILE* file) {
    std::fprintf(
        file,
        "usage: %s KIND [options] FILE.csv\n"
        "       %s import [options] FILE [--output TABLE.csv]\n"
        "       %s sql KIND --columns NAMES --table TABLE [options]\n"
        "       %s run [--keep-going] COMMANDS.txt\n"
        "       %s help KIND|import|sql|run\n\n"
        "Prints the report of an analysis of a comma-separated file (-: standard input): samples in rows,\n"
        "variables in columns, names in the first row and labels in the first column. import makes such a\n"
        "file of a table that another program saved, sql prints the statement that reduces the table of a\n"
        "database to what an analysis needs, run runs the commands of a file.\n\n"
        "kinds:\n"
        "  summary            the file as it was read\n",
        programName, programName, programName, programName, programName);
    for (const AnalysisKind& each : analysisKinds()) {
        if (each.analysis != nullptr) std::fprintf(file, "  %-18s %s\n", each.batchName, each.batchTitle);
    }
    std::fprintf(file, "\noptions:\n");
    printCommonOptions(file);
    std::fprintf(
        file,
        "\nEach kind has options of its own, and an example: %s help KIND\n"
        "The status line goes to standard error. Exit status: 0 success, 1 the file or the analysis\n"
        "failed (the report says why), 2 wrong command line.\n",
        programName);
}

} // namespace

void printHelp(std::FILE* file, const AnalysisKind* kind) {
    if (kind != nullptr) {
        printKindHelp(file, *kind);
    } else {
        printProgramHelp(file);
    }
}
