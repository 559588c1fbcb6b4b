#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "data/printf_format.h"
#include "numeric/block.h"

// The longest fixed-point double: sign, 309 digits, point, decimals.
constexpr std::size_t numberSize = 400;

// A number with so many decimals, rounded exactly, whatever the locale; not-a-number is "nan" without a sign,
// infinities are "inf" and "-inf".
std::string_view formatNumber(double value, int decimals, char (&digits)[numberSize]);

// One text of the report: appended to, never rescanned.
//
// A buffer of fixed capacity (its end included) is cut at a line end when a piece would pass it; its last
// line then says so and the rest is dropped. A growing buffer is never cut; when memory runs out it keeps
// what it has and tells so.
class TextBuffer {
public:
    enum class Growth { fixed, growing };

    [[nodiscard]] ErrorCode allocate(Index capacity, Growth growth);
    void clear();

    void append(std::string_view piece);
    // printf for texts and whole numbers; reals go through appendNumber, whose letters do not depend on the
    // system.
    [[gnu::format(PRINTF_KIND, 2, 3)]] void appendFormat(const char* format, ...);
    // Right-justified in `width`, never cut.
    void appendRight(std::string_view piece, int width);
    void appendInteger(std::int64_t value, int width);
    void appendNumber(double value, int width, int decimals);

    const char* text() const { return characters_.size() > 0 ? characters_.data() : ""; }
    std::size_t length() const { return static_cast<std::size_t>(length_); }
    bool isCut() const { return cut_; }
    bool ranOutOfMemory() const { return outOfMemory_; }

private:
    char* reserve(Index count);
    void cutAtLineEnd();

    Block<char> characters_;
    Index length_ = 0;
    Growth growth_ = Growth::fixed;
    bool cut_ = false;
    bool outOfMemory_ = false;
};
