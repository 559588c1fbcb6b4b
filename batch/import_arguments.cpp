#include "batch/import_arguments.h"

#include <algorithm>
#include <cstring>

#include "batch/argument_list.h"
#include "batch/nearest_word.h"
#include "batch/usage_line.h"
#include "data/import/import_choice.h"
#include "data/word_list.h"

namespace {

void suggestWord(std::string_view words, std::string_view typed, Complaint& complaint) {
    NearestWord nearest(typed);
    for (int number = 1; !wordOf(words, number).empty(); ++number) nearest.offer(wordOf(words, number));
    nearest.suggest(complaint);
}

Match takeChoice(Option option, Arguments& arguments, ImportOptions& options, Complaint& complaint) {
    for (int k = 0; k < wordChoiceCount; ++k) {
        const auto choice = static_cast<ImportChoice>(k);
        const ImportChoiceNames& names = namesOf(choice);
        if (choice == ImportChoice::labels || option.name != names.option) continue;
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        const int word = findWord(names.words, option.value);
        if (word == 0) {
            complaint.say("%s takes %s, not '%.200s'", names.option, names.words, option.value);
            suggestWord(names.words, option.value, complaint);
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
        suggestWord(writeWords, option.value, complaint);
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
        if (option.name == "--output" && isStandardStream(option.value)) command.output = nullptr;
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

} // namespace

bool parseImport(int count, char** argumentTexts, ImportCommand& command, Complaint& complaint) {
    Arguments arguments(count, argumentTexts, 2);
    bool optionsEnded = false;
    while (const char* argument = arguments.next()) {
        if (optionsEnded || (std::strncmp(argument, "--", 2) != 0 && !isHelp(argument))) {
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
        } else if (isHelp(argument)) {
            command.help = true;
            return true;
        } else {
            Match match = takeChoice(option, arguments, command.options, complaint);
            if (match == Match::none) match = takeWritten(option, arguments, command.options, complaint);
            if (match == Match::none) match = takeText(option, arguments, command, complaint);
            if (match == Match::none) match = takeList(option, arguments, command.options, complaint);
            if (match == Match::none) {
                complaint.say("there is no option '%.200s'", argument);
                NearestWord nearest(option.name);
                for (const OptionText& known : importOptions()) nearest.offer(known.name);
                nearest.suggest(complaint);
            }
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

std::span<const OptionText> importOptions() {
    const auto choice = [](ImportChoice each, const char* help) {
        return OptionText{namesOf(each).option, namesOf(each).words, help};
    };
    static const OptionText options[] = {
        choice(ImportChoice::encoding, "the file's encoding"),
        choice(ImportChoice::delimiter, "what stands between cells"),
        choice(ImportChoice::decimal, "the decimal sign"),
        choice(ImportChoice::thousands, "the mark behind a thousand"),
        choice(ImportChoice::header, "whether the first row holds names"),
        {"--labels", "first|none|NAME", "the column of labels; none: samples are numbered"},
        {"--na", "TEXT[,TEXT...]", "more texts of a missing cell; none: forget the usual ones"},
        {"--keep", "NAME[,NAME...]", "take these columns alone, by name or as #3 or #3-#7"},
        {"--drop", "NAME[,NAME...]", "leave columns out"},
        {"--categories", "NAME[,NAME...]", "make categories of columns that hold numbers, too"},
        choice(ImportChoice::oddRows, "end at a row of another length, or leave it out (all)"),
        {writeOption, writeWords, "the encoding of the table (utf-8)"},
        {"--output", "TABLE.csv", "write the table to TABLE.csv; -: standard output"},
        {"--codebook", "FILE", "write what categories mean to FILE"},
    };
    return options;
}

void printImportHelp(std::FILE* file) {
    std::fprintf(
        file,
        "usage: %s import [options] FILE [--output TABLE.csv]\n\n"
        "Reads a table that another program saved, from standard input when FILE is -, and writes it as\n"
        "this program reads it. What is found out and what is left out goes to standard error.\n\n"
        "options of this command:\n",
        programName);
    for (const OptionText& option : importOptions()) printOption(file, option);
    std::fprintf(
        file, "\nWhat no option says is found out from the file. Exit status: 0 success, 1 the file failed\n"
              "and nothing is written, 2 wrong command line.\n");
}
