#include "report/text_buffer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <iterator>

std::string_view formatNumber(double value, int decimals, char (&digits)[numberSize]) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    const auto [end, error] =
        std::to_chars(digits, digits + numberSize, value, std::chars_format::fixed, decimals);
    return {digits, static_cast<std::size_t>(end - digits)};
}

ErrorCode TextBuffer::allocate(Index capacity, Growth growth) {
    growth_ = growth;
    const ErrorCode code = characters_.allocate(capacity);
    clear();
    return code;
}

void TextBuffer::clear() {
    length_ = 0;
    cut_ = false;
    outOfMemory_ = false;
    if (characters_.size() > 0) characters_[0] = '\0';
}

// Room for `count` more characters and the end, or null.
char* TextBuffer::reserve(Index count) {
    if (cut_ || outOfMemory_ || characters_.size() == 0) return nullptr;
    const Index room = characters_.size() - length_ - 1;
    if (count > room) {
        if (growth_ == Growth::fixed) {
            cutAtLineEnd();
            return nullptr;
        }
        const Index larger = 2 * characters_.size();
        const Index needed = length_ + count + 1;
        if (characters_.grow(needed > larger ? needed : larger) != success) {
            outOfMemory_ = true;
            return nullptr;
        }
    }
    char* target = characters_.data() + length_;
    length_ += count;
    characters_[length_] = '\0';
    return target;
}

void TextBuffer::cutAtLineEnd() {
    char notice[64];
    const int printed = std::snprintf(notice, sizeof notice, "-- cut at %d characters\n",
                                      static_cast<int>(characters_.size()));
    const Index noticeLength = printed;
    cut_ = true;
    if (noticeLength >= characters_.size()) return;
    const Index last = characters_.size() - 1 - noticeLength;
    Index kept = length_ < last ? length_ : last;
    while (kept > 0 && characters_[kept - 1] != '\n') --kept;
    std::copy_n(notice, noticeLength + 1, characters_.data() + kept);
    length_ = kept + noticeLength;
}

void TextBuffer::append(std::string_view piece) {
    if (growth_ == Growth::fixed && !cut_ && characters_.size() > 0) {
        // A long piece fills the room that is left before the cut.
        const Index room = characters_.size() - length_ - 1;
        if (std::ssize(piece) > room) append(piece.substr(0, static_cast<std::size_t>(room)));
    }
    char* target = reserve(std::ssize(piece));
    if (target != nullptr) std::copy(piece.begin(), piece.end(), target);
}

void TextBuffer::appendFormat(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int printed = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (printed > 0) {
        char* target = reserve(printed);
        if (target != nullptr) std::vsnprintf(target, static_cast<std::size_t>(printed) + 1, format, again);
    }
    va_end(again);
}

void TextBuffer::appendRight(std::string_view piece, int width) {
    const Index length = std::ssize(piece);
    const Index blanks = width > length ? width - length : 0;
    char* target = reserve(blanks + length);
    if (target == nullptr) return;
    std::fill_n(target, blanks, ' ');
    std::copy(piece.begin(), piece.end(), target + blanks);
}

void TextBuffer::appendInteger(std::int64_t value, int width) {
    char digits[32];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    appendRight({digits, static_cast<std::size_t>(end - digits)}, width);
}

void TextBuffer::appendNumber(double value, int width, int decimals) {
    if (cut_) return;
    char digits[numberSize];
    appendRight(formatNumber(value, decimals, digits), width);
}
