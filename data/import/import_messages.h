#pragma once

#include <cstdarg>
#include <string_view>

#include "data/import/import_choice.h"
#include "data/printf_format.h"
#include "numeric/block.h"

// A text of the file or the user in a message, as "%.*s" takes it: its first characters.
struct Shown {
    int length;
    const char* text;
};
Shown shown(std::string_view text, std::size_t most = 80);

// What an import tells: notes of what was found, warnings of what is left out or changed, and the refusal
// that ends it. Each is one line of UTF-8 that begins "note : ", "warning : " or "error : ". The first
// refusal counts. Of notes and of warnings the first 50 stand there, and how many more there are.
class ImportMessages {
public:
    enum class Wording { options, labels };

    // `labels` writes delimiter, between quotes in a refusal, where a format says --delimiter.
    explicit ImportMessages(Wording wording = Wording::options) : wording_(wording) {}

    [[gnu::format(PRINTF_KIND, 2, 3)]] void note(const char* format, ...);
    [[gnu::format(PRINTF_KIND, 2, 3)]] void warn(const char* format, ...);
    [[gnu::format(PRINTF_KIND, 2, 3)]] void refuse(const char* format, ...);
    void clear();

    // Tells how many more there are.
    void finish();

    // All lines, each with its "\n", the refusal last.
    const char* text() const { return lines_.size() > 0 ? lines_.data() : ""; }
    bool refused() const { return refused_; }
    // Whether the refusal names this choice as one that mends it.
    bool asks(ImportChoice choice) const { return asked_[static_cast<int>(choice)]; }
    // Names a choice in the arguments of a refusal, which then asks for it.
    const char* ask(ImportChoice choice);
    bool ranOutOfMemory() const { return outOfMemory_; }

private:
    void wordFormat(const char* format, bool isRefusal, char* worded, std::size_t size);
    void append(const char* kind, const char* format, std::va_list arguments);
    [[gnu::format(PRINTF_KIND, 3, 4)]] void appendFormat(const char* kind, const char* format, ...);

    Wording wording_;
    Block<char> lines_;
    Index length_ = 0;
    Index notes_ = 0;
    Index warnings_ = 0;
    bool refused_ = false;
    bool outOfMemory_ = false;
    bool asked_[importChoiceCount] = {};
};
