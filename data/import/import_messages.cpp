#include "data/import/import_messages.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "data/import/unicode.h"

namespace {

constexpr Index mostLines = 50; // of notes and of warnings
constexpr std::size_t longestLine = 2000;
constexpr std::size_t longestFormat = 500;

} // namespace

Shown shown(std::string_view text, std::size_t most) {
    text = firstCharacters(text, most);
    return {static_cast<int>(text.size()), text.data()};
}

// Options in the format become what they are called here. What a file holds comes by the arguments, and
// stays.
void ImportMessages::wordFormat(const char* format, bool isRefusal, char* worded, std::size_t size) {
    std::size_t length = 0;
    while (*format != '\0' && length + 1 < size) {
        const char* name = nullptr;
        for (int k = 0; k < importChoiceCount && *format == '-'; ++k) {
            const ImportChoice choice = static_cast<ImportChoice>(k);
            const std::size_t option = std::strlen(namesOf(choice).option);
            if (std::strncmp(format, namesOf(choice).option, option) != 0) continue;
            if (isRefusal) asked_[k] = true;
            if (wording_ == Wording::options) continue;
            name = namesOf(choice).label;
            format += option;
        }
        if (name == nullptr) {
            worded[length++] = *format++;
        } else {
            const int count =
                std::snprintf(worded + length, size - length, isRefusal ? "\"%s\"" : "%s", name);
            length = std::min(size - 1, length + static_cast<std::size_t>(count));
        }
    }
    worded[length] = '\0';
}

const char* ImportMessages::ask(ImportChoice choice) {
    if (!refused_) asked_[static_cast<int>(choice)] = true;
    return wording_ == Wording::options ? namesOf(choice).option : namesOf(choice).label;
}

void ImportMessages::append(const char* kind, const char* format, std::va_list arguments) {
    char worded[longestFormat];
    wordFormat(format, refused_, worded, sizeof worded);
    char line[longestLine];
    const int head = std::snprintf(line, sizeof line, "%s : ", kind);
    const std::size_t used = static_cast<std::size_t>(head);
    std::vsnprintf(line + used, sizeof line - used - 1, worded, arguments);
    // What a file holds must not pass for a line of its own, nor drive a terminal.
    for (char* at = line; *at != '\0'; ++at) {
        if (static_cast<unsigned char>(*at) < ' ' || *at == '\x7f') *at = ' ';
    }
    const Index length = static_cast<Index>(std::strlen(line));
    line[length] = '\n';
    const Index needed = length_ + length + 2;
    if (needed > lines_.size() && lines_.grow(std::max(needed, 2 * lines_.size())) != success) {
        outOfMemory_ = true;
        return;
    }
    std::memcpy(lines_.data() + length_, line, static_cast<std::size_t>(length) + 1);
    length_ += length + 1;
    lines_[length_] = '\0';
}

void ImportMessages::appendFormat(const char* kind, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    append(kind, format, arguments);
    va_end(arguments);
}

void ImportMessages::finish() {
    if (warnings_ > mostLines) {
        appendFormat("warning", "there are %lld more warnings",
                     static_cast<long long>(warnings_ - mostLines));
    }
    if (notes_ > mostLines) {
        appendFormat("note", "there are %lld more notes", static_cast<long long>(notes_ - mostLines));
    }
    notes_ = warnings_ = 0;
}

void ImportMessages::note(const char* format, ...) {
    if (++notes_ > mostLines) return;
    std::va_list arguments;
    va_start(arguments, format);
    append("note", format, arguments);
    va_end(arguments);
}

void ImportMessages::warn(const char* format, ...) {
    if (++warnings_ > mostLines) return;
    std::va_list arguments;
    va_start(arguments, format);
    append("warning", format, arguments);
    va_end(arguments);
}

void ImportMessages::refuse(const char* format, ...) {
    if (refused_) return;
    finish();
    refused_ = true;
    std::va_list arguments;
    va_start(arguments, format);
    append("error", format, arguments);
    va_end(arguments);
}

void ImportMessages::clear() {
    length_ = notes_ = warnings_ = 0;
    refused_ = outOfMemory_ = false;
    std::fill(std::begin(asked_), std::end(asked_), false);
    if (lines_.size() > 0) lines_[0] = '\0';
}
