#include "batch/usage_line.h"

#include <cstring>

void printUsageLine(std::FILE* file, const char* usage, const char* help) {
    constexpr int width = 25;
    const bool isLong = std::strlen(usage) > static_cast<std::size_t>(width);
    std::fprintf(file, "  %-*s%s%*s", width, usage, isLong ? "\n" : " ", isLong ? width + 3 : 0, "");
    std::fprintf(file, "%s", help);
}
