#include "batch/import_arguments.h"

#include <cstring>

#include "batch/argument_list.h"
#include "batch/usage_line.h"

namespace {

enum class Match { none, taken, wrong };

// An option of words, each with the value that it stands for.
struct WordOption {
    const char* name;
    const char* usage; // the words, in the order of the values from 1 on
    const char* help;
};

constexpr WordOption encodingOption = {"--encoding", "utf-8|utf-16|windows-1252", "the file's encoding"};
constexpr WordOption delimiterOption = {"--delimiter", "comma|semicolon|tab|bar",
                                        "what stands between cells"};
constexpr WordOption decimalOption = {"--decimal", "point|comma", "the decimal sign"};
constexpr WordOption thousandsOption = {"--thousands", "none|comma|point|space",
                                        "the mark behind a thousand"};
constexpr WordOption headerOption = {"--header", "yes|no", "whether the first row holds names"};
constexpr WordOption rowsOption = {"--rows", "all|fitting",
                                   "end at a row of another length, or leave it out (all)"};
constexpr WordOption writeOption = {"--write", "utf-8|ansi", "the encoding of the table (utf-8)"};

// The number of a word in a list, from 1; 0 when it is none.
int findWord(std::string_view words, std::string_view word) {
    for (int number = 1;; ++number) {
        const std::size_t bar = words.find('|');
        if (words.substr(0, bar) == word) return number;
        if (bar == std::string_view::npos) return 0;
        words.remove_prefix(bar + 1);
    }
}

// `first`: the value of the first word.
template <class Value>
Match takeWord(Option option, const WordOption& known, Arguments& arguments, Value& value, int first,
               Complaint& complaint) {
    if (option.name != known.name) return Match::none;
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    const int word = findWord(known.usage, option.value);
    if (word == 0) {
        complaint.say("%s takes %s, not '%.200s'", known.name, known.usage, option.value);
        return Match::wrong;
    }
    value = static_cast<Value>(first + word - 1);
    return Match::taken;
}

Match takeWords(const Option& option, Arguments& arguments, ImportOptions& options, Complaint& complaint) {
    Match match = takeWord(option, encodingOption, arguments, options.encoding, 1, complaint);
    if (match == Match::none) {
        match = takeWord(option, delimiterOption, arguments, options.delimiter, 1, complaint);
    }
    if (match == Match::none)
        match = takeWord(option, decimalOption, arguments, options.decimal, 1, complaint);
    if (match == Match::none) {
        match = takeWord(option, thousandsOption, arguments, options.thousands, 1, complaint);
    }
    if (match == Match::none) match = takeWord(option, headerOption, arguments, options.header, 1, complaint);
    if (match == Match::none) match = takeWord(option, rowsOption, arguments, options.oddRows, 0, complaint);
    if (match == Match::none) match = takeWord(option, writeOption, arguments, options.written, 0, complaint);
    return match;
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
    } lists[] = {{"--na", options.missing},
                 {"--keep", options.keeps},
                 {"--drop", options.drops},
                 {"--categories", options.categories}};
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
            Match match = takeWords(option, arguments, command.options, complaint);
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
    for (const WordOption& each :
         {encodingOption, delimiterOption, decimalOption, thousandsOption, headerOption}) {
        printOption(file, each.name, each.usage, each.help);
    }
    printOption(file, "--labels", "first|none|NAME", "the column of labels; none: samples are numbered");
    printOption(file, "--na", "TEXT[,TEXT...]", "more texts of a missing cell; none: forget the usual ones");
    printOption(file, "--keep", "NAME[,NAME...]", "take these columns alone, by name or as #3 or #3-#7");
    printOption(file, "--drop", "NAME[,NAME...]", "leave columns out");
    printOption(file, "--categories", "NAME[,NAME...]", "make categories of columns that hold numbers, too");
    printOption(file, rowsOption.name, rowsOption.usage, rowsOption.help);
    printOption(file, writeOption.name, writeOption.usage, writeOption.help);
    printOption(file, "--output", "TABLE.csv", "write the table to TABLE.csv instead of standard output");
    printOption(file, "--codebook", "FILE", "write what categories mean to FILE");
    std::fprintf(
        file, "\nWhat no option says is found out from the file. Exit status: 0 success, 1 the file failed\n"
              "and nothing is written, 2 wrong command line.\n");
}
