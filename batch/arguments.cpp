#include "batch/arguments.h"

#include <algorithm>
#include <cstdio>
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

// Adds the value of an option that can be given again and again.
Match takeRepeated(Option option, Arguments& arguments, Block<const char*>& texts, Complaint& complaint) {
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    if (texts.grow(texts.size() + 1) != success) {
        complaint.say("no memory for %.*s", static_cast<int>(option.name.size()), option.name.data());
        return Match::wrong;
    }
    texts[texts.size() - 1] = option.value;
    return Match::taken;
}

Match parseNumerics(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    line.numerics = findNumerics(option.value);
    if (line.numerics != nullptr) return Match::taken;
    complaint.say("--numerics takes classic|textbook, not '%.200s'", option.value);
    NearestWord nearest(option.value);
    for (const char* word : {"classic", "textbook"}) nearest.offer(word);
    nearest.suggest(complaint);
    return Match::wrong;
}

// Of an option that takes one of some words: puts the place of the word into `choice`.
template <class Choice, std::size_t count>
Match parseWord(Option option, Arguments& arguments, const char* const (&words)[count], Choice& choice,
                Complaint& complaint) {
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    char known[80] = "";
    for (std::size_t k = 0; k < count; ++k) {
        if (std::strcmp(words[k], option.value) == 0) {
            choice = static_cast<Choice>(k);
            return Match::taken;
        }
        const std::size_t used = std::strlen(known);
        std::snprintf(known + used, sizeof known - used, "%s%s", k > 0 ? "|" : "", words[k]);
    }
    complaint.say("%.*s takes %s, not '%.200s'", static_cast<int>(option.name.size()), option.name.data(),
                  known, option.value);
    NearestWord nearest(option.value);
    for (const char* word : words) nearest.offer(word);
    nearest.suggest(complaint);
    return Match::wrong;
}

bool takeFile(const char* path, CommandLine& line, Complaint& complaint) {
    if (line.file != nullptr) complaint.say("one file at a time: '%.150s' and '%.150s'", line.file, path);
    line.file = path;
    return !complaint.any();
}

Match parseCommonOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    if (option.name == "--exclude") return takeRepeated(option, arguments, line.excludes, complaint);
    if (option.name == "--numerics") return parseNumerics(option, arguments, line, complaint);
    if (option.name == "--missing")
        return parseWord(option, arguments, missingWords, line.missing, complaint);
    if (option.name == "--format") return parseWord(option, arguments, formatWords, line.format, complaint);
    const struct {
        const char* name;
        const char*& target;
    } texts[] = {{"--output", line.output}, {"--save", line.saved}, {"--path", line.shownPath}};
    for (const auto& text : texts) {
        if (option.name != text.name) continue;
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        text.target = isStandardStream(option.value) && option.name == "--output" ? nullptr : option.value;
        return Match::taken;
    }

    if (option.name == "--moments") {
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        line.isMoments = true;
        return takeFile(option.value, line, complaint) ? Match::taken : Match::wrong;
    }
    if (option.name == "--dialect") {
        line.hasDialect = true;
        return parseWord(option, arguments, dialectWords, line.dialect, complaint);
    }
    if (option.name == "--divisor") {
        const Match match = parseWord(option, arguments, divisorWords, line.divisorIsN, complaint);
        line.hasDivisor = true;
        return match;
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
    return Match::none;
}

// Fields may share a name, each with its own words.
Match parseFieldOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
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

Match parseAssignmentOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
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

Match parseClustersOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    if (option.name != "--clusters" || !numbersClusters(line.kind)) return Match::none;
    const bool taken =
        arguments.takeValue(option, complaint) && parseClusters(option.value, line.clusters, complaint);
    return taken ? Match::taken : Match::wrong;
}

Match parsePictureOption(Option option, Arguments& arguments, CommandLine& line, Complaint& complaint) {
    const PictureOption known = findPictureOption(option.name);
    if (known == PictureOption::none) return Match::none;
    const bool taken = known == PictureOption::value ? arguments.takeValue(option, complaint)
                                                     : refuseValue(option, complaint);
    return taken && setPictureOption(option.name, option.value, line.picture, complaint) ? Match::taken
                                                                                         : Match::wrong;
}

void complainOfOption(const Option& option, const AnalysisKind* kind, Complaint& complaint) {
    complaint.say("there is no option '%.*s'",
                  static_cast<int>(std::min<std::size_t>(option.name.size(), 200)), option.name.data());
    NearestWord nearest(option.name);
    forEachOption(kind, [&](const KnownOption& known) { nearest.offer(known.name); });
    nearest.suggest(complaint);
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
        line.kind = findKind(word);
        if (line.kind == nullptr || line.kind->analysis == nullptr) {
            complaint.say("there is no analysis '%.200s'", word);
            NearestWord nearest(word);
            for (const char* command : commandWords()) nearest.offer(command);
            for (const AnalysisKind& each : analysisKinds()) nearest.offer(each.batchName);
            nearest.suggest(complaint);
            return false;
        }
    }
    return true;
}

} // namespace

Match takeAnalysisOption(const Option& option, Arguments& arguments, CommandLine& line,
                         Complaint& complaint) {
    for (const auto parse : {parseCommonOption, parsePictureOption, parseFieldOption, parseAssignmentOption,
                             parseClustersOption}) {
        const Match match = parse(option, arguments, line, complaint);
        if (match != Match::none) return match;
    }
    return Match::none;
}

bool parseCommandLine(int count, char** argumentTexts, CommandLine& line, Complaint& complaint) {
    Arguments arguments(count, argumentTexts);
    if (!parseKind(arguments.next(), line, complaint)) return false;
    if (line.task != CommandLine::Task::run) return true;

    bool optionsEnded = false;
    while (const char* argument = arguments.next()) {
        const bool isShort = isHelp(argument) || isVersion(argument);
        if (optionsEnded || (std::strncmp(argument, "--", 2) != 0 && !isShort)) {
            if (!takeFile(argument, line, complaint)) return false;
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
            if (match == Match::none) complainOfOption(option, line.kind, complaint);
            if (match != Match::taken) return false;
        }
    }
    if (!checkPictureOptions(line.picture, line.kind, complaint)) return false;
    if (!checkSaveOptions(line, complaint)) return false;
    if (!checkScoreOptions(line, complaint)) return false;
    if (!checkMomentOptions(line, complaint)) return false;
    if (line.file == nullptr) complaint.say("which file?");
    if (line.file != nullptr && std::strlen(line.file) >= sizeof DataSet::path) {
        complaint.say("the path of the file has more than %d characters",
                      static_cast<int>(sizeof DataSet::path) - 1);
    }
    return !complaint.any();
}
