#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "data/printf_format.h"
#include "numeric/block.h"

// The longest fixed-point double: sign, 309 digits, point, decimals.
constexpr std::size_t numberSize = 400;

// A number with so many decimals, rounded exactly, whatever the locale; not-a-number is "nan" without a sign,
// infinities are "inf" and "-inf".
std::string_view formatNumber(double value, int decimals, char (&digits)[numberSize]);

constexpr std::size_t wholeSize = 20; // sign and 19 digits
std::string_view formatWhole(std::int64_t value, char (&digits)[wholeSize]);

// One text of the report: appended to, never rescanned.
//
// A buffer of fixed capacity (its end included) is cut at a line end when a piece would pass it; its last
// line then says so and the rest is dropped. A growing buffer is never cut; when memory runs out it keeps
// what it has and tells so.
//
// A growing text is a chain of pieces of memory that never move: `for (std::string_view piece : text)` gives
// them in their order. What is appended at once stands in one of them.
class TextBuffer {
    struct Piece {
        Piece* next;
        Index length;
        Index capacity; // without the end

        char* characters() { return reinterpret_cast<char*>(this + 1); }
        const char* characters() const { return reinterpret_cast<const char*>(this + 1); }
        std::string_view view() const { return {characters(), static_cast<std::size_t>(length)}; }
    };

public:
    enum class Growth { fixed, growing };

    class Iterator {
    public:
        explicit Iterator(const Piece* piece) : piece_(piece) {}
        std::string_view operator*() const { return piece_->view(); }
        Iterator& operator++() {
            piece_ = piece_->next;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

    private:
        const Piece* piece_;
    };

    TextBuffer() = default;
    TextBuffer(TextBuffer&& other) noexcept { *this = std::move(other); }
    TextBuffer& operator=(TextBuffer&& other) noexcept;
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;
    ~TextBuffer() { release(); }

    // The first piece of a growing text has this capacity.
    [[nodiscard]] ErrorCode allocate(Index capacity, Growth growth);
    // Keeps the first piece.
    void clear();

    // Returns where it stands, in a growing text for as long as that has it; null when it was not taken.
    const char* append(std::string_view text);
    void append(char character) {
        if (char* const target = reserve(1)) *target = character;
    }
    // printf for texts and whole numbers; reals go through appendNumber, whose letters do not depend on the
    // system.
    [[gnu::format(PRINTF_KIND, 2, 3)]] void appendFormat(const char* format, ...);
    // Right-justified in `width`, never cut.
    void appendRight(std::string_view text, int width);
    void appendInteger(std::int64_t value, int width);
    void appendNumber(double value, int width, int decimals);
    // Appends all of another text. From a growing one to a growing one its pieces are handed over, and it is
    // empty afterwards; one that ran out of memory keeps them.
    void take(TextBuffer& other);
    // Makes one piece of a growing text, which is to be a small one; false without memory, which
    // ranOutOfMemory tells, too.
    bool join();

    Iterator begin() const { return Iterator(first_); }
    Iterator end() const { return Iterator(nullptr); }
    // The text of one piece with a NUL behind it: of fixed capacity, within its first capacity, or joined.
    const char* text() const;
    std::string_view view() const { return {text(), length()}; }
    std::size_t length() const {
        return static_cast<std::size_t>(before_ + (last_ != nullptr ? last_->length : 0));
    }
    bool isCut() const { return cut_; }
    bool ranOutOfMemory() const { return outOfMemory_; }

private:
    // Room for `count` more characters, or null.
    char* reserve(Index count) {
        if (count > room_) return reserveElsewhere(count);
        char* const target = last_->characters() + last_->length;
        last_->length += count;
        room_ -= count;
        return target;
    }
    char* reserveElsewhere(Index count);
    bool addPiece(Index capacity);
    void open(Piece* piece);
    void swapPieces(TextBuffer& other);
    bool runOut();
    void refuseMore() { room_ = -1; }
    void release();
    void cutAtLineEnd();

    Piece* first_ = nullptr;
    Piece* last_ = nullptr;
    Index room_ = -1;  // in the last piece; -1 when that is not to be written to
    Index before_ = 0; // characters before the last piece
    Growth growth_ = Growth::fixed;
    bool cut_ = false;
    bool outOfMemory_ = false;
};
