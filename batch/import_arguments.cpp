#include "batch/import_arguments.h"

#include <cstring>

#include "batch/argument_list.h"
#include "batch/usage_line.h"
#include "data/import/import_choice.h"

namespace {

enum class Match { none, taken, wrong };

Match takeChoice(Option option, Arguments& arguments, ImportOptions& options, Complaint& complaint) {
    for (int k = 0; k < wordChoiceCount; ++k) {
        const auto choice = static_cast<ImportChoice>(k);
        const ImportChoiceNames& names = namesOf(choice);
        if (choice == ImportChoice::labels || option.name != names.option) continue;
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        const int word = findWord(names.words, option.value);
        if (word == 0) {
            complaint.say("%s takes %s, not '%.200s'", names.option, names.words, option.value);
            return Match::wrong;
        }
        chooseWord(options, choice, word);
        return Match::taken;
    }
    return Match::none;
}

constexpr const char* writeOption = "--write";
constexpr const char* writeWords = "utf-8|ansi";

Match takeWritten(Option option, Arguments& arguments, ImportOptions& options, Complaint& complaint) {
    if (option.name != writeOption) return Match::none;
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    const int word = findWord(writeWords, option.value);
    if (word == 0) {
        complaint.say("%s takes %s, not '%.200s'", writeOption, writeWords, option.value);
        return Match::wrong;
    }
    options.written = static_cast<WrittenText>(word - 1);
    return Match::taken;
}

Match takeText(Option option, Arguments& arguments, ImportCommand& command, Complaint& complaint) {
    const struct {
        const char* name;
        const char*& target;
    } texts[] = {{"--output", command.output},
                 {"--codebook", command.codebook},
                 {"--labels", command.options.labelName}};
    for (const auto& text : texts) {
        if (option.name != text.name) continue;
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        text.target = option.value;
        if (option.name != "--labels") return Match::taken;
        const std::string_view value = option.value;
        command.options.labels = value == "first"  ? LabelColumn::first
                                 : value == "none" ? LabelColumn::none
                                                   : LabelColumn::named;
        return Match::taken;
    }
    return Match::none;
}

Match takeList(Option option, Arguments& arguments, ImportOptions& options, Complaint& complaint) {
    const struct {
        const char* name;
        Block<const char*>& target;
    } lists[] = {{namesOf(ImportChoice::missing).option, options.missing},
                 {namesOf(ImportChoice::keeps).option, options.keeps},
                 {namesOf(ImportChoice::drops).option, options.drops},
                 {namesOf(ImportChoice::categories).option, options.categories}};
    for (const auto& list : lists) {
        if (option.name != list.name) continue;
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        if (list.target.grow(list.target.size() + 1) != success) {
            complaint.say("no memory for %s", list.name);
            return Match::wrong;
        }
        list.target[list.target.size() - 1] = option.value;
        return Match::taken;
    }
    return Match::none;
}

void printOption(std::FILE* file, const char* name, const char* value, const char* help) {
    char usage[120];
    std::snprintf(usage, sizeof usage, "%s %s", name, value);
    printUsageLine(file, usage, help);
    std::fprintf(file, "\n");
}

void printChoice(std::FILE* file, ImportChoice choice, const char* help) {
    printOption(file, namesOf(choice).option, namesOf(choice).words, help);
}

} // namespace

bool parseImport(int count, char** argumentTexts, ImportCommand& command, Complaint& complaint) {
    Arguments arguments(count, argumentTexts, 2);
    bool optionsEnded = false;
    while (const char* argument = arguments.next()) {
        if (optionsEnded || std::strncmp(argument, "--", 2) != 0) {
            if (command.file != nullptr) {
                complaint.say("one file at a time: '%.150s' and '%.150s'", command.file, argument);
                return false;
            }
            command.file = argument;
            continue;
        }
        const Option option = splitOption(argument);
        if (std::strcmp(argument, "--") == 0) {
            optionsEnded = true;
        } else if (option.name == "--help") {
            command.help = true;
            return true;
        } else {
            Match match = takeChoice(option, arguments, command.options, complaint);
            if (match == Match::none) match = takeWritten(option, arguments, command.options, complaint);
            if (match == Match::none) match = takeText(option, arguments, command, complaint);
            if (match == Match::none) match = takeList(option, arguments, command.options, complaint);
            if (match == Match::none) complaint.say("there is no option '%.200s'", argument);
            if (match != Match::taken) return false;
        }
    }
    const ImportOptions& options = command.options;
    if ((options.decimal == DecimalSign::point && options.thousands == ThousandsMark::point) ||
        (options.decimal == DecimalSign::comma && options.thousands == ThousandsMark::comma)) {
        complaint.say("--decimal and --thousands cannot name the same mark");
    }
    if (command.file == nullptr) complaint.say("which file?");
    return !complaint.any();
}

void printImportHelp(std::FILE* file) {
    std::fprintf(
        file,
        "usage: %s import [options] FILE [--output TABLE.csv]\n\n"
        "Reads a table that another program saved, from standard input when FILE is -, and writes it as\n"
        "this program reads it. What is found out and what is left out goes to standard error.\n\n"
        "options of this command:\n",
        programName);
    printChoice(file, ImportChoice::encoding, "the file's encoding");
    printChoice(file, ImportChoice::delimiter, "what stands between cells");
    printChoice(file, ImportChoice::decimal, "the decimal sign");
    printChoice(file, ImportChoice::thousands, "the mark behind a thousand");
    printChoice(file, ImportChoice::header, "whether the first row holds names");
    printOption(file, "--labels", "first|none|NAME", "the column of labels; none: samples are numbered");
    printOption(file, "--na", "TEXT[,TEXT...]", "more texts of a missing cell; none: forget the usual ones");
    printOption(file, "--keep", "NAME[,NAME...]", "take these columns alone, by name or as #3 or #3-#7");
    printOption(file, "--drop", "NAME[,NAME...]", "leave columns out");
    printOption(file, "--categories", "NAME[,NAME...]", "make categories of columns that hold numbers, too");
    printChoice(file, ImportChoice::oddRows, "end at a row of another length, or leave it out (all)");
    printOption(file, writeOption, writeWords, "the encoding of the table (utf-8)");
    printOption(file, "--output", "TABLE.csv", "write the table to TABLE.csv instead of standard output");
    printOption(file, "--codebook", "FILE", "write what categories mean to FILE");
    std::fprintf(
        file, "\nWhat no option says is found out from the file. Exit status: 0 success, 1 the file failed\n"
              "and nothing is written, 2 wrong command line.\n");
}
