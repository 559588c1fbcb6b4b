#pragma once

#include <string_view>

#include "batch/complaint.h"

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
    Arguments(int count, char** arguments, int first = 1)
        : count_(count), arguments_(arguments), at_(first) {}

    const char* next() { return at_ < count_ ? arguments_[at_++] : nullptr; }

    bool takeValue(Option& option, Complaint& complaint);

private:
    int count_;
    char** arguments_;
    int at_;
};

// False and a complaint when the option has a value.
bool refuseValue(const Option& option, Complaint& complaint);
