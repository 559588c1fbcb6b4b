#include "data/import/import_messages.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

constexpr Index longestText = 1 << 16;
constexpr std::size_t longestLine = 2000;

} // namespace

void ImportMessages::append(const char* kind, const char* format, std::va_list arguments) {
    char line[longestLine];
    const int head = std::snprintf(line, sizeof line, "%s : ", kind);
    const std::size_t used = static_cast<std::size_t>(head);
    std::vsnprintf(line + used, sizeof line - used - 1, format, arguments);
    // What a file holds must not pass for a line of its own, nor drive a terminal.
    for (char* at = line; *at != '\0'; ++at) {
        if (static_cast<unsigned char>(*at) < ' ' || *at == '\x7f') *at = ' ';
    }
    const Index length = static_cast<Index>(std::strlen(line));
    line[length] = '\n';
    if (length_ + length + 2 > longestText && !refused_) return;
    const Index needed = length_ + length + 2;
    if (needed > lines_.size() && lines_.grow(std::max(needed, 2 * lines_.size())) != success) {
        outOfMemory_ = true;
        return;
    }
    std::memcpy(lines_.data() + length_, line, static_cast<std::size_t>(length) + 1);
    length_ += length + 1;
    lines_[length_] = '\0';
}

void ImportMessages::note(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    append("note", format, arguments);
    va_end(arguments);
}

void ImportMessages::warn(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    append("warning", format, arguments);
    va_end(arguments);
}

void ImportMessages::refuse(const char* format, ...) {
    if (refused_) return;
    refused_ = true;
    std::va_list arguments;
    va_start(arguments, format);
    append("error", format, arguments);
    va_end(arguments);
}

void ImportMessages::clear() {
    length_ = 0;
    refused_ = outOfMemory_ = false;
    if (lines_.size() > 0) lines_[0] = '\0';
}
