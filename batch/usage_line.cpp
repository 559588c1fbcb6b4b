#include "batch/usage_line.h"

#include <cstring>

void printUsageLine(std::FILE* file, const char* usage, const char* help) {
    constexpr int width = 25;
    const bool isLong = std::strlen(usage) > static_cast<std::size_t>(width);
    std::fprintf(file, "  %-*s%s%*s", width, usage, isLong ? "\n" : " ", isLong ? width + 3 : 0, "");
    for (const char* line = help;;) {
        const char* const end = std::strchr(line, '\n');
        if (end == nullptr) {
            std::fprintf(file, "%s", line);
            return;
        }
        std::fprintf(file, "%.*s\n%*s", static_cast<int>(end - line), line, width + 3, "");
        line = end + 1;
    }
}

void printOption(std::FILE* file, const OptionText& option) {
    char usage[120];
    std::snprintf(usage, sizeof usage, "%s%s%s%s%s", option.letter != nullptr ? option.letter : "",
                  option.letter != nullptr ? ", " : "", option.name, option.value != nullptr ? " " : "",
                  option.value != nullptr ? option.value : "");
    printUsageLine(file, usage, option.help);
    std::fprintf(file, "\n");
}
