#include "report/text_buffer.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>

#include "report/fixed_point.h"

namespace {

// Pieces become as long as all before them together, within these bounds. Memory of the longer ones comes
// zeroed from the system.
constexpr Index shortestPiece = 4096;
constexpr Index longestPiece = 1'048'576;

// The usual width of a column takes two moves of eight.
void putBlanks(char* target, Index count) {
    constexpr Index step = 8;
    if (count < step || count > 2 * step) {
        std::fill_n(target, count, ' ');
        return;
    }
    std::memcpy(target, "        ", step);
    std::memcpy(target + count - step, "        ", step);
}

} // namespace

std::string_view formatNumber(double value, int decimals, char (&digits)[numberSize]) {
    FixedPoint number;
    if (toFixedPoint(value, decimals, number)) {
        putFixedPoint(number, digits + number.length);
        return {digits, static_cast<std::size_t>(number.length)};
    }
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    const auto [end, error] =
        std::to_chars(digits, digits + numberSize, value, std::chars_format::fixed, decimals);
    return {digits, static_cast<std::size_t>(end - digits)};
}

std::string_view formatWhole(std::int64_t value, char (&digits)[wholeSize]) {
    const auto [end, error] = std::to_chars(digits, digits + wholeSize, value);
    return {digits, static_cast<std::size_t>(end - digits)};
}

TextBuffer& TextBuffer::operator=(TextBuffer&& other) noexcept {
    swapPieces(other);
    std::swap(growth_, other.growth_);
    std::swap(cut_, other.cut_);
    std::swap(outOfMemory_, other.outOfMemory_);
    return *this;
}

ErrorCode TextBuffer::allocate(Index capacity, Growth growth) {
    release();
    growth_ = growth;
    cut_ = outOfMemory_ = false;
    return capacity <= 0 || addPiece(capacity - 1) ? success : outOfMemory;
}

void TextBuffer::clear() {
    cut_ = outOfMemory_ = false;
    if (first_ == nullptr) return;
    for (Piece* piece = std::exchange(first_->next, nullptr); piece != nullptr;) {
        std::free(std::exchange(piece, piece->next));
    }
    first_->length = 0;
    before_ = 0;
    open(first_);
}

void TextBuffer::release() {
    clear();
    std::free(first_);
    first_ = last_ = nullptr;
    before_ = 0;
    refuseMore();
}

void TextBuffer::open(Piece* piece) {
    last_ = piece;
    room_ = piece->capacity - piece->length;
}

// Behind the last one, to be written to from now on; false without memory.
bool TextBuffer::addPiece(Index capacity) {
    constexpr Index edges = sizeof(Piece) + 1;
    void* const memory = capacity <= PTRDIFF_MAX - edges ? allocateZeroed(edges + capacity, 1) : nullptr;
    if (memory == nullptr) return false;
    Piece* const piece = new (memory) Piece{nullptr, 0, capacity};
    before_ = static_cast<Index>(length());
    (last_ != nullptr ? last_->next : first_) = piece;
    open(piece);
    return true;
}

bool TextBuffer::runOut() {
    outOfMemory_ = true;
    refuseMore();
    return false;
}

// What the last piece has no room for.
char* TextBuffer::reserveElsewhere(Index count) {
    if (cut_ || outOfMemory_ || first_ == nullptr) return nullptr;
    if (growth_ == Growth::fixed) {
        cutAtLineEnd();
        return nullptr;
    }
    const Index usual = std::clamp(static_cast<Index>(length()), shortestPiece, longestPiece);
    if (!addPiece(std::max(count, usual))) {
        runOut();
        return nullptr;
    }
    return reserve(count);
}

void TextBuffer::cutAtLineEnd() {
    const Index capacity = first_->capacity + 1;
    char notice[64];
    const int printed =
        std::snprintf(notice, sizeof notice, "-- cut at %d characters\n", static_cast<int>(capacity));
    cut_ = true;
    refuseMore();
    if (printed >= capacity) return;
    Index kept = std::min(first_->length, first_->capacity - printed);
    while (kept > 0 && first_->characters()[kept - 1] != '\n') --kept;
    std::copy_n(notice, printed, first_->characters() + kept);
    first_->length = kept + printed;
}

const char* TextBuffer::append(std::string_view text) {
    if (growth_ == Growth::fixed && room_ >= 0 && std::ssize(text) > room_) {
        // A long text fills the room that is left before the cut.
        append(text.substr(0, static_cast<std::size_t>(room_)));
    }
    char* const target = reserve(std::ssize(text));
    if (target != nullptr) std::copy(text.begin(), text.end(), target);
    return target;
}

void TextBuffer::appendFormat(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int printed = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (printed > 0) { // each piece has room for the end, too
        char* const target = reserve(printed);
        if (target != nullptr) std::vsnprintf(target, static_cast<std::size_t>(printed) + 1, format, again);
    }
    va_end(again);
}

void TextBuffer::appendRight(std::string_view text, int width) {
    const Index length = std::ssize(text);
    const Index count = std::max<Index>(width, length);
    char* const target = reserve(count);
    if (target == nullptr) return;
    if (count > length) putBlanks(target, count);
    std::copy(text.begin(), text.end(), target + count - length);
}

void TextBuffer::appendInteger(std::int64_t value, int width) {
    char digits[wholeSize];
    appendRight(formatWhole(value, digits), width);
}

void TextBuffer::appendNumber(double value, int width, int decimals) {
    FixedPoint number;
    if (!toFixedPoint(value, decimals, number)) {
        char digits[numberSize];
        appendRight(formatNumber(value, decimals, digits), width);
        return;
    }
    const Index count = std::max(width, number.length);
    char* const target = reserve(count);
    if (target == nullptr) return;
    if (count > number.length) putBlanks(target, count);
    putFixedPoint(number, target + count);
}

void TextBuffer::take(TextBuffer& other) {
    if (growth_ == Growth::fixed || other.growth_ == Growth::fixed) {
        for (const std::string_view piece : other) append(piece);
        return;
    }
    if (outOfMemory_ || other.outOfMemory_ || first_ == nullptr || other.first_ == nullptr) return;
    TextBuffer taken; // leaves room for the message of what may run out of memory later
    if (taken.allocate(shortestPiece, Growth::growing) != success) {
        runOut();
        return;
    }
    taken.swapPieces(other);
    before_ = static_cast<Index>(length()) + taken.before_;
    last_->next = std::exchange(taken.first_, nullptr);
    open(taken.last_);
}

bool TextBuffer::join() {
    if (first_ == last_) return true;
    TextBuffer whole;
    if (whole.allocate(static_cast<Index>(length()) + 1, growth_) != success) return runOut();
    for (const std::string_view piece : *this) whole.append(piece);
    swapPieces(whole);
    return true;
}

void TextBuffer::swapPieces(TextBuffer& other) {
    std::swap(first_, other.first_);
    std::swap(last_, other.last_);
    std::swap(room_, other.room_);
    std::swap(before_, other.before_);
}

const char* TextBuffer::text() const {
    assert(first_ == last_);
    if (first_ == nullptr) return "";
    first_->characters()[first_->length] = '\0';
    return first_->characters();
}
