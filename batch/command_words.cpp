#include "batch/command_words.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "batch/complaint.h"

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// Takes the next word of the line off `at`, which stands on its first character, and ends it with a NUL in
// place; false when its quotes stay open.
bool takeWord(char*& at, const char* end) {
    char* out = at;
    char quote = '\0';
    while (at < end && (quote != '\0' || !isBlank(*at))) {
        if (*at == '\\' && quote != '\'') {
            const char* after = at;
            while (after < end && *after == '\\') ++after;
            const bool isBeforeQuote = after < end && *after == '"';
            const Index slashes = after - at;
            for (Index k = isBeforeQuote ? slashes / 2 : slashes; k > 0; --k) *out++ = '\\';
            at += slashes;
            if (isBeforeQuote && slashes % 2 != 0) *out++ = *at++;
        } else if (quote == '\0' && (*at == '"' || *at == '\'')) {
            quote = *at++;
        } else if (quote != '\0' && *at == quote) {
            quote = '\0';
            ++at;
        } else {
            *out++ = *at++;
        }
    }
    if (at < end) ++at; // the blank's place may be that of the NUL
    *out = '\0';
    return quote == '\0';
}

// The name of this program, with or without a path and what Windows ends names of programs with.
bool isProgramName(std::string_view word) {
    word.remove_prefix(word.find_last_of("/\\") + 1); // 0 when there is none
    if (word.ends_with(".exe")) word.remove_suffix(4);
    return word == programName;
}

} // namespace

ErrorCode splitCommands(char* program, char* text, Index length, CommandWords& result) {
    char* at = text;
    char* const end = text + length;
    if (std::string_view(text, static_cast<std::size_t>(length)).starts_with("\xEF\xBB\xBF")) at += 3;
    for (Index line = 1; at < end; ++line) {
        char* const lineEnd = std::find(at, end, '\n');
        const auto refuse = [&](const char* why) {
            result.fault = why;
            result.faultLine = line;
            return success;
        };
        if (std::find(at, lineEnd, '\0') != lineEnd) return refuse("there is a NUL in it");
        CommandWords::Command command = {line, result.words.size(), 0};
        for (;;) {
            while (at < lineEnd && isBlank(*at)) ++at;
            if (at == lineEnd || *at == '#') break;
            char* const word = at;
            if (!takeWord(at, lineEnd)) return refuse("its quotes stay open");
            if (command.count == 0) {
                if (!result.words.add(program)) return outOfMemory;
                command.count = 1;
                if (isProgramName(word)) continue;
            }
            if (command.count == 1 && std::strcmp(word, "run") == 0) return refuse("run cannot run itself");
            if (!result.words.add(word)) return outOfMemory;
            ++command.count;
        }
        if (command.count > 0 && (!result.words.add(nullptr) || !result.commands.add(command))) {
            return outOfMemory;
        }
        at = std::min(lineEnd + 1, end);
    }
    return success;
}
