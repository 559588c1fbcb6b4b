#include "analysis/run/start_arguments.h"

StartArguments readStartArguments(int count, const char* const* arguments) {
    constexpr std::string_view name = "--numerics";
    StartArguments start;
    int at = 1;
    const auto next = [&] { return at < count ? arguments[at++] : nullptr; };
    start.file = next();
    if (start.file == nullptr) return start;

    std::string_view value = start.file;
    if (!value.starts_with(name)) return start;
    value.remove_prefix(name.size());
    if (value.empty()) {
        const char* const argument = next();
        if (argument != nullptr) value = argument;
    } else if (value.starts_with('=')) {
        value.remove_prefix(1);
    } else {
        return start; // a file whose name begins so
    }
    start.numerics = findNumerics(value);
    start.file = next();
    return start;
}
