#include "batch/argument_list.h"

#include <algorithm>
#include <cstring>

#include "data/word_list.h"

Option splitOption(const char* argument) {
    const char* equals = std::strchr(argument, '=');
    if (equals == nullptr) return {argument, nullptr};
    return {{argument, static_cast<std::size_t>(equals - argument)}, equals + 1};
}

bool isHelp(const char* argument) {
    return std::strcmp(argument, "--help") == 0 || std::strcmp(argument, "-h") == 0;
}

bool isVersion(const char* argument) {
    return std::strcmp(argument, "--version") == 0 || std::strcmp(argument, "-V") == 0;
}

bool Arguments::takeValue(Option& option, Complaint& complaint) {
    if (option.value == nullptr) option.value = next();
    if (option.value != nullptr) return true;
    complaint.say("%.*s needs a value", static_cast<int>(option.name.size()), option.name.data());
    return false;
}

bool refuseValue(const Option& option, Complaint& complaint) {
    if (option.value == nullptr) return true;
    complaint.say("%.*s takes no value", static_cast<int>(option.name.size()), option.name.data());
    return false;
}

Match takeText(Option option, std::span<const TextOption> known, Arguments& arguments, Complaint& complaint) {
    for (const TextOption& each : known) {
        if (option.name != each.name) continue;
        if (!arguments.takeValue(option, complaint)) return Match::wrong;
        each.text = option.value;
        return Match::taken;
    }
    return Match::none;
}

Match takeOutput(const Option& option, Arguments& arguments, const char*& path, Complaint& complaint) {
    const TextOption known[] = {{"--output", path}};
    const Match match = takeText(option, known, arguments, complaint);
    if (match == Match::taken && isStandardStream(path)) path = nullptr;
    return match;
}

Match takeRepeated(Option option, Arguments& arguments, Block<const char*>& texts, Complaint& complaint) {
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    if (texts.grow(texts.size() + 1) != success) {
        complaint.say("no memory for %.*s", static_cast<int>(option.name.size()), option.name.data());
        return Match::wrong;
    }
    texts[texts.size() - 1] = option.value;
    return Match::taken;
}

Match takeWord(Option option, Arguments& arguments, const char* words, int& number, Complaint& complaint) {
    if (!arguments.takeValue(option, complaint)) return Match::wrong;
    number = findWord(words, option.value);
    if (number > 0) return Match::taken;
    complaint.say("%.*s takes %s, not '%.200s'", static_cast<int>(option.name.size()), option.name.data(),
                  words, option.value);
    NearestWord nearest(option.value);
    for (int k = 1; !wordOf(words, k).empty(); ++k) nearest.offer(wordOf(words, k));
    nearest.suggest(complaint);
    return Match::wrong;
}

bool takeFile(const char* path, const char*& file, Complaint& complaint) {
    if (file != nullptr) complaint.say("one file at a time: '%.150s' and '%.150s'", file, path);
    file = path;
    return !complaint.any();
}

void complainOfOption(const Option& option, const NearestWord& nearest, Complaint& complaint) {
    complaint.say("there is no option '%.*s'",
                  static_cast<int>(std::min<std::size_t>(option.name.size(), 200)), option.name.data());
    nearest.suggest(complaint);
}
