#include "batch/arguments.h"

#include <cstdlib>
#include <cstring>

#include "batch/argument_list.h"
#include "batch/assignments.h"
#include "batch/common_options.h"
#include "batch/field_values.h"
#include "batch/given_moments.h"
#include "batch/known_options.h"
#include "batch/nearest_word.h"
#include "batch/saved_columns.h"
#include "batch/threads.h"
#include "data/word_list.h"

namespace {

// Wider cells than any spreadsheet takes.
constexpr int greatestWidth = 1000;

bool parseCount(const Option& option, int greatest, int& count, Complaint& complaint) {
    char* end = nullptr;
    const long value = std::strtol(option.value, &end, 10);
    if (end == option.value || *end != '\0' || value < 1 || value > greatest) {
        complaint.say("%.*s takes a whole number from 1 to %d, not '%s'",
                      static_cast<int>(option.name.size()), option.name.data(), greatest, option.value);
        return false;
    }
    count = static_cast<int>(value);
    return true;
}

// Of an option that takes one of some words: puts the place of the word into `choice`.
template <class Choice>
Match takeChoice(const Option& option, Arguments& arguments, const char* words, Choice& choice,
                 Complaint& complaint) {
    int number = 0;
    const Match match = takeWord(option, arguments, words, number, complaint);
    if (match == Match::taken) choice = static_cast<Choice>(number - 1);
    return match;
}

Match takeNumerics(const Option& option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    int number = 0;
    const Match match = takeWord(option, arguments, numericsWords, number, complaint);
    if (match == Match::taken) line.numerics = findNumerics(wordOf(numericsWords, number));
    return match;
}

Match takeMoments(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    line.isMoments = true;
    return takeFile(option.value, line.file, complaint) ? Match::taken : Match::wrong;
}

Match takeCommonOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    if (option.name == "--output") return takeOutput(option, arguments, line.output, complaint);
    if (option.name == "--exclude") return takeRepeated(option, arguments, line.excludes, complaint);
    if (option.name == "--numerics") return takeNumerics(option, arguments, line, complaint);
    if (option.name == "--moments") return takeMoments(option, arguments, line, complaint);
    if (option.name == "--missing")
        return takeChoice(option, arguments, missingWords, line.missing, complaint);
    if (option.name == "--format") return takeChoice(option, arguments, formatWords, line.format, complaint);
    if (option.name == "--dialect") {
        line.hasDialect = true;
        return takeChoice(option, arguments, dialectWords, line.dialect, complaint);
    }
    if (option.name == "--divisor") {
        line.hasDivisor = true;
        return takeChoice(option, arguments, divisorWords, line.divisorIsN, complaint);
    }
    const struct {
        const char* name;
        int greatest;
        int& target;
    } counts[] = {{"--variable-width", greatestWidth, line.variableWidth},
                  {"--label-width", greatestWidth, line.labelWidth},
                  {"--threads", mostThreads, line.threads}};
    for (const auto& count : counts) {
        if (option.name != count.name) continue;
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        return parseCount(option, count.greatest, count.target, complaint) ? Match::taken : Match::wrong;
    }
    const struct {
        const char* name;
        bool& target;
    } flags[] = {{"--strict", line.strict}, {"--score-sql", line.scoresBySql}};
    for (const auto& flag : flags) {
        if (option.name != flag.name) continue;
        flag.target = true;
        return refuseValue(option, complaint) ? Match::taken : Match::wrong;
    }
    const TextOption texts[] = {{"--save", line.saved}, {"--path", line.shownPath}};
    return takeText(option, texts, arguments, complaint);
}

// Fields may share a name, each with its own words.
Match takeFieldOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    if (line.kind == nullptr) return Match::none;
    std::string_view name = option.name.substr(2);
    const bool negated = name.substr(0, 3) == "no-";
    const OptionFields fields = line.kind->analysis->fields;
    bool known = false;
    for (std::size_t index = 0; index < fields.size(); ++index) {
        const OptionField& field = fields[index];
        if (field.name == nullptr) continue;
        if (field.type == OptionType::flag) {
            if (name != field.name && !(negated && name.substr(3) == field.name)) continue;
            if (!refuseValue(option, complaint)) return Match::wrong;
            line.values[index] = negated ? flagOff : flagOn;
            return Match::taken;
        }
        if (name != field.name) continue;
        known = true;
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        if (!isFieldValue(field, option.value)) continue;
        line.values[index] = option.value;
        return Match::taken;
    }
    if (!known) return Match::none;
    complainOfValue(fields, name, option.value, complaint);
    return Match::wrong;
}

Match takeAssignmentOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    if (line.kind == nullptr) return Match::none;
    for (const AssignmentOption& each : assignmentOptions()) {
        if (option.name.substr(2) != each.name || !each.isTakenBy(*line.kind)) continue;
        Block<const char*>& texts = line.*each.texts;
        if (takeRepeated(option, arguments, texts, complaint) != Match::taken) return Match::wrong;
        const char* text = texts[texts.size() - 1];
        if (isAssignmentList(text)) return Match::taken;
        complaint.say("--%s takes %s, not '%.200s'", each.name, assignmentUsage, text);
        return Match::wrong;
    }
    return Match::none;
}

Match takeClustersOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    if (option.name != "--clusters" || !numbersClusters(line.kind)) return Match::none;
    const bool taken =
        arguments.takeValue(option, complaint) && parseClusters(option.value, line.clusters, complaint);
    return taken ? Match::taken : Match::wrong;
}

Match takePictureOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    const PictureOption known = findPictureOption(option.name);
    if (known == PictureOption::none) return Match::none;
    const bool taken = known == PictureOption::value ? arguments.takeValue(option, complaint)
                                                     : refuseValue(option, complaint);
    return taken && setPictureOption(option.name, option.value, line.picture, complaint) ? Match::taken
                                                                                         : Match::wrong;
}

// The first argument: an analysis, or a question about the program.
bool parseKind(const char* word, CommandLine& line, Complaint& complaint) {
    if (word == nullptr) {
        complaint.say("which analysis of which file?");
        return false;
    }
    if (isHelp(word) || std::strcmp(word, "help") == 0) {
        line.task = CommandLine::Task::help;
    } else if (isVersion(word)) {
        line.task = CommandLine::Task::version;
    } else if (std::strcmp(word, "summary") != 0) {
        line.kind = requireKind(word, commandWords(), complaint);
        return line.kind != nullptr;
    }
    return true;
}

} // namespace

const AnalysisKind* requireKind(const char* word, std::span<const char* const> others, Complaint& complaint) {
    const AnalysisKind* const kind = findKind(word);
    if (kind != nullptr && kind->analysis != nullptr) return kind;
    complaint.say("there is no analysis '%.200s'", word);
    NearestWord nearest(word);
    for (const char* other : others) nearest.offer(other);
    for (const AnalysisKind& each : analysisKinds()) nearest.offer(each.batchName);
    nearest.suggest(complaint);
    return nullptr;
}

Match takeAnalysisOption(const Option& option, Arguments& arguments, CommandLine& line,
                         Complaint& complaint) {
    for (const auto take :
         {takeCommonOption, takePictureOption, takeFieldOption, takeAssignmentOption, takeClustersOption}) {
        const Match match = take(option, arguments, line, complaint);
        if (match != Match::none) return match;
    }
    return Match::none;
}

bool parseCommandLine(int count, char* const* argumentTexts, CommandLine& line, Complaint& complaint) {
    Arguments arguments(count, argumentTexts);
    if (!parseKind(arguments.next(), line, complaint)) return false;
    if (line.task != CommandLine::Task::run) return true;

    bool optionsEnded = false;
    while (const char* argument = arguments.next()) {
        const bool isShort = isHelp(argument) || isVersion(argument);
        if (optionsEnded || (std::strncmp(argument, "--", 2) != 0 && !isShort)) {
            if (!takeFile(argument, line.file, complaint)) return false;
            continue;
        }
        const Option option = splitOption(argument);
        if (std::strcmp(argument, "--") == 0) {
            optionsEnded = true;
        } else if (isHelp(argument)) {
            line.task = CommandLine::Task::help;
            return true;
        } else if (isVersion(argument)) {
            line.task = CommandLine::Task::version;
            return true;
        } else {
            const Match match = takeAnalysisOption(option, arguments, line, complaint);
            if (match == Match::none) {
                NearestWord nearest(option.name);
                forEachOption(line.kind, [&](const KnownOption& known) { nearest.offer(known.name); });
                complainOfOption(option, nearest, complaint);
            }
            if (match != Match::taken) return false;
        }
    }
    if (!checkPictureOptions(line.picture, line.kind, complaint)) return false;
    if (!checkSaveOptions(line, complaint)) return false;
    if (!checkScoreOptions(line, complaint)) return false;
    if (!checkMomentOptions(line, complaint)) return false;
    if (line.file == nullptr) complaint.say("which file?");
    for (const char* path : {line.file, line.shownPath}) {
        if (path == nullptr || std::strlen(path) < pathSize) continue;
        complaint.say("the path of the file has more than %d characters", static_cast<int>(pathSize) - 1);
    }
    return !complaint.any();
}
