#include "batch/argument_list.h"

#include <cstring>

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
