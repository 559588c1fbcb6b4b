#pragma once

#include <span>
#include <string_view>

#include "batch/complaint.h"
#include "batch/nearest_word.h"
#include "numeric/block.h"

// An argument split into the name of an option and the value that follows its "=", if one does.
struct Option {
    std::string_view name;
    const char* value;
};

Option splitOption(const char* argument);

// What became of an option: nobody knows it, or it is read, or its value is wrong, which a complaint says.
enum class Match { none, taken, wrong };

// Whether an argument asks for the help, or for the version.
bool isHelp(const char* argument);
bool isVersion(const char* argument);

// The path that stands for standard input or output.
inline bool isStandardStream(const char* path) {
    return path[0] == '-' && path[1] == '\0';
}

// The arguments one after the other; an option's value stands behind "=" or is the next argument.
class Arguments {
public:
    // From `first` on; that of number 0 is the program.
    Arguments(int count, char* const* arguments, int first = 1)
        : count_(count), arguments_(arguments), at_(first) {}

    const char* next() { return at_ < count_ ? arguments_[at_++] : nullptr; }

    bool takeValue(Option& option, Complaint& complaint);

private:
    int count_;
    char* const* arguments_;
    int at_;
};

// False and a complaint when the option has a value.
bool refuseValue(const Option& option, Complaint& complaint);

// Takes an option whose value is a text, one of these names.
struct TextOption {
    std::string_view name;
    const char*& text;
};
Match takeText(Option option, std::span<const TextOption> known, Arguments& arguments, Complaint& complaint);

// Takes --output; a path that stands for standard output becomes null.
Match takeOutput(const Option& option, Arguments& arguments, const char*& path, Complaint& complaint);

// Adds the value of an option that can be given again and again.
Match takeRepeated(Option option, Arguments& arguments, Block<const char*>& texts, Complaint& complaint);

// Finds the value of an option in a list of words (data/word_list.h); `number` counts from 1.
Match takeWord(Option option, Arguments& arguments, const char* words, int& number, Complaint& complaint);

// Takes what is no option for the only file; false and a complaint when there is one.
bool takeFile(const char* path, const char*& file, Complaint& complaint);

// Says that there is no such option, and which may be meant.
void complainOfOption(const Option& option, const NearestWord& nearest, Complaint& complaint);
