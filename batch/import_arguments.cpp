#include "batch/import_arguments.h"

#include <cstring>

#include "batch/argument_list.h"
#include "batch/nearest_word.h"
#include "data/import/import_choice.h"
#include "data/word_list.h"

namespace {

constexpr OptionText writeOption = {"--write", "utf-8|ansi", "the encoding of the table (utf-8)"};

Match takeChoice(const Option& option, Arguments& arguments, ImportOptions& options, Complaint& complaint) {
    for (int k = 0; k < wordChoiceCount; ++k) {
        const auto choice = static_cast<ImportChoice>(k);
        const ImportChoiceNames& names = namesOf(choice);
        if (choice == ImportChoice::labels || option.name != names.option) continue;
        int number = 0;
        const Match match = takeWord(option, arguments, names.words, number, complaint);
        if (match == Match::taken) chooseWord(options, choice, number);
        return match;
    }
    return Match::none;
}

Match takeLabels(Option option, Arguments& arguments, ImportOptions& options, Complaint& complaint) {
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    const int number = findWord(namesOf(ImportChoice::labels).words, option.value);
    options.labels = number > 0 ? static_cast<LabelColumn>(number) : LabelColumn::named;
    options.labelName = option.value;
    return Match::taken;
}

Match takeList(const Option& option, Arguments& arguments, ImportOptions& options, Complaint& complaint) {
    const struct {
        const char* name;
        Block<const char*>& target;
    } lists[] = {{namesOf(ImportChoice::missing).option, options.missing},
                 {namesOf(ImportChoice::keeps).option, options.keeps},
                 {namesOf(ImportChoice::drops).option, options.drops},
                 {namesOf(ImportChoice::categories).option, options.categories}};
    for (const auto& list : lists) {
        if (option.name == list.name) return takeRepeated(option, arguments, list.target, complaint);
    }
    return Match::none;
}

Match takeImportOption(const Option& option, Arguments& arguments, ImportCommand& command,
                       Complaint& complaint) {
    if (option.name == "--output") return takeOutput(option, arguments, command.output, complaint);
    if (option.name == "--labels") return takeLabels(option, arguments, command.options, complaint);
    if (option.name == writeOption.name) {
        int number = 0;
        const Match match = takeWord(option, arguments, writeOption.value, number, complaint);
        if (match == Match::taken) command.options.written = static_cast<WrittenText>(number - 1);
        return match;
    }
    const TextOption texts[] = {{"--codebook", command.codebook}};
    Match match = takeText(option, texts, arguments, complaint);
    if (match == Match::none) match = takeChoice(option, arguments, command.options, complaint);
    if (match == Match::none) match = takeList(option, arguments, command.options, complaint);
    return match;
}

} // namespace

bool parseImport(int count, char* const* argumentTexts, ImportCommand& command, Complaint& complaint) {
    Arguments arguments(count, argumentTexts, 2);
    bool optionsEnded = false;
    while (const char* argument = arguments.next()) {
        if (optionsEnded || (std::strncmp(argument, "--", 2) != 0 && !isHelp(argument))) {
            if (!takeFile(argument, command.file, complaint)) return false;
            continue;
        }
        const Option option = splitOption(argument);
        if (std::strcmp(argument, "--") == 0) {
            optionsEnded = true;
        } else if (isHelp(argument)) {
            command.help = true;
            return true;
        } else {
            const Match match = takeImportOption(option, arguments, command, complaint);
            if (match == Match::none) {
                NearestWord nearest(option.name);
                for (const OptionText& known : importOptions()) nearest.offer(known.name);
                complainOfOption(option, nearest, complaint);
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
        writeOption,
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
