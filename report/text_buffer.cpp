#include "report/text_buffer.h"

#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

// The longest fixed-point double: sign, 309 digits, point, decimals.
constexpr std::size_t longestNumber = 400;

} // namespace

ErrorCode TextBuffer::allocate(std::size_t capacity, Growth growth) {
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
char* TextBuffer::reserve(std::size_t count) {
    if (cut_ || outOfMemory_ || characters_.size() == 0) return nullptr;
    const std::size_t room = characters_.size() - length_ - 1;
    if (count > room) {
        if (growth_ == Growth::fixed) {
            cutAtLineEnd();
            return nullptr;
        }
        const std::size_t larger = 2 * characters_.size();
        const std::size_t needed = length_ + count + 1;
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
    const std::size_t noticeLength = static_cast<std::size_t>(printed);
    cut_ = true;
    if (noticeLength >= characters_.size()) return;
    const std::size_t last = characters_.size() - 1 - noticeLength;
    std::size_t kept = length_ < last ? length_ : last;
    while (kept > 0 && characters_[kept - 1] != '\n') --kept;
    std::memcpy(characters_.data() + kept, notice, noticeLength + 1);
    length_ = kept + noticeLength;
}

void TextBuffer::append(std::string_view piece) {
    if (growth_ == Growth::fixed && !cut_ && characters_.size() > 0) {
        // A long piece fills the room that is left before the cut.
        const std::size_t room = characters_.size() - length_ - 1;
        if (piece.size() > room) append(piece.substr(0, room));
    }
    char* target = reserve(piece.size());
    if (target != nullptr) std::memcpy(target, piece.data(), piece.size());
}

void TextBuffer::appendFormat(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int printed = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (printed > 0) {
        const std::size_t count = static_cast<std::size_t>(printed);
        char* target = reserve(count);
        if (target != nullptr) std::vsnprintf(target, count + 1, format, again);
    }
    va_end(again);
}

void TextBuffer::appendRight(std::string_view piece, int width) {
    const std::size_t wanted = width > 0 ? static_cast<std::size_t>(width) : 0;
    const std::size_t blanks = wanted > piece.size() ? wanted - piece.size() : 0;
    char* target = reserve(blanks + piece.size());
    if (target == nullptr) return;
    std::memset(target, ' ', blanks);
    std::memcpy(target + blanks, piece.data(), piece.size());
}

void TextBuffer::appendInteger(std::int64_t value, int width) {
    char digits[32];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    appendRight({digits, static_cast<std::size_t>(end - digits)}, width);
}

void TextBuffer::appendNumber(double value, int width, int decimals) {
    if (cut_) return;
    if (std::isnan(value)) return appendRight("nan", width);
    if (std::isinf(value)) return appendRight(value > 0 ? "inf" : "-inf", width);
    char digits[longestNumber];
    const auto [end, error] =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    appendRight({digits, static_cast<std::size_t>(end - digits)}, width);
}
