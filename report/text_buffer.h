#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "numeric/block.h"

// One text of the report: appended to, never rescanned.
//
// A buffer of fixed capacity (its end included) is cut at a line end when a piece would pass it; its last
// line then says so and the rest is dropped. A growing buffer is never cut; when memory runs out it keeps
// what it has and tells so.
class TextBuffer {
public:
    enum class Growth { fixed, growing };

    ErrorCode allocate(std::size_t capacity, Growth growth);
    void clear();

    void append(std::string_view piece);
    // printf for texts and whole numbers; reals go through appendNumber, whose letters do not depend on the
    // system.
    [[gnu::format(printf, 2, 3)]] void appendFormat(const char* format, ...);
    // Right-justified in `width`, never cut.
    void appendRight(std::string_view piece, int width);
    void appendInteger(std::int64_t value, int width);
    // Fixed point; not-a-number is "nan" without a sign, infinities are "inf" and "-inf".
    void appendNumber(double value, int width, int decimals);

    const char* text() const { return characters_.size() > 0 ? characters_.data() : ""; }
    std::size_t length() const { return length_; }
    bool isCut() const { return cut_; }
    bool ranOutOfMemory() const { return outOfMemory_; }

private:
    char* reserve(std::size_t count);
    void cutAtLineEnd();

    Block<char> characters_;
    std::size_t length_ = 0;
    Growth growth_ = Growth::fixed;
    bool cut_ = false;
    bool outOfMemory_ = false;
};
