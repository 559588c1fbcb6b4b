#include <bit>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <random>

#include "report/text_buffer.h"
#include "tests/support/cases.h"
#include "tests/support/whole_text.h"

namespace {

struct Fixed40 : TextBuffer {
    Fixed40() { EXPECT_EQ(allocate(40, Growth::fixed), success); }
};

} // namespace

TEST(TextBuffer, IsCutAtALineEnd) {
    for (const Case& test : readCases("report/cuts.tsv")) {
        Fixed40 buffer;
        for (std::size_t piece = 1; piece < test.size(); ++piece) buffer.append(test[piece]);
        EXPECT_EQ(buffer.text(), test[0]);
        EXPECT_EQ(buffer.length(), test[0].size());
        EXPECT_EQ(buffer.isCut(), test[0].ends_with("cut at 40 characters\n"));
        buffer.clear();
        buffer.append("again");
        EXPECT_STREQ(buffer.text(), "again");
    }
    constexpr int immense = 2000000000;
    void (*const appends[])(TextBuffer&) = {
        [](TextBuffer& buffer) { buffer.appendRight("x", immense); },
        [](TextBuffer& buffer) { buffer.appendInteger(-1, immense); },
        [](TextBuffer& buffer) { buffer.appendNumber(1.0, immense, 3); },
        [](TextBuffer& buffer) { buffer.appendNumber(-DBL_MAX, 0, 12); },
        [](TextBuffer& buffer) { buffer.appendFormat("%d%s", 1, std::string(1000, 'x').c_str()); },
    };
    for (const auto append : appends) {
        Fixed40 buffer;
        buffer.append("line\n");
        append(buffer);
        append(buffer);
        EXPECT_STREQ(buffer.text(), "line\n-- cut at 40 characters\n");
    }
}

TEST(TextBuffer, KeepsWhatItHasWhenItCannotGrow) {
    TextBuffer buffer;
    ASSERT_EQ(buffer.allocate(8, TextBuffer::Growth::growing), success);
    buffer.append("1234567");
    failAllocation(1);
    buffer.append("8");
    failAllocation(0);
    EXPECT_TRUE(buffer.ranOutOfMemory());
    buffer.append("9");
    EXPECT_STREQ(buffer.text(), "1234567");
    buffer.clear();
    const char* const first = buffer.append("first");
    std::string expected = "first";
    for (int i = 0; i < 10'000; ++i) {
        buffer.appendInteger(10'000 + i, 0);
        expected += std::to_string(10'000 + i);
    }
    EXPECT_EQ(buffer.length(), expected.size());
    EXPECT_EQ(wholeText(buffer), expected);
    EXPECT_EQ(std::string_view(first, 5), "first"); // where it was
    EXPECT_FALSE(buffer.ranOutOfMemory() || buffer.isCut());
}

TEST(TextBuffer, HandsItsPiecesOver) {
    TextBuffer upper, lower;
    ASSERT_EQ(upper.allocate(8, TextBuffer::Growth::growing) | lower.allocate(8, TextBuffer::Growth::growing),
              success);
    for (const bool fails : {true, false}) {
        upper.clear();
        upper.append("above\n");
        const char* const stands = fails ? lower.append(std::string(9000, 'x')) : (*++lower.begin()).data();
        failAllocation(fails ? 1 : 0);
        upper.take(lower);
        failAllocation(0);
        EXPECT_EQ(upper.ranOutOfMemory(), fails);
        EXPECT_EQ(wholeText(fails ? lower : upper), (fails ? "" : "above\n") + std::string(9000, 'x'));
        EXPECT_EQ(upper.length(), fails ? 6u : 9006u);
        EXPECT_TRUE(fails ||
                    (*++ ++upper.begin()).data() == stands); // behind the first of both, which has none
    }
    EXPECT_EQ(lower.length(), 0u);
    failAllocation(1); // room for a message is left
    lower.append("failed");
    failAllocation(0);
    EXPECT_STREQ(lower.text(), "failed");
    upper.append("below");
    ASSERT_TRUE(upper.join());
    EXPECT_EQ(upper.text(), "above\n" + std::string(9000, 'x') + "below");
}

TEST(TextBuffer, WritesNumbers) {
    for (const Case& test : readCases("report/numbers.tsv")) {
        Fixed40 buffer;
        buffer.appendNumber(std::strtod(test[0].c_str(), nullptr), std::stoi(test[1]), std::stoi(test[2]));
        EXPECT_EQ(buffer.text(), test[3]);
    }
}

// Ties, their neighbours, numbers of every size: digit by digit as the library prints them.
TEST(TextBuffer, RoundsNumbersAsTheLibraryDoes) {
    std::mt19937_64 random(1);
    const auto check = [](double value, int decimals) {
        char expected[numberSize], digits[numberSize];
        const char* const end =
            std::to_chars(expected, expected + numberSize, value, std::chars_format::fixed, decimals).ptr;
        ASSERT_EQ(formatNumber(value, decimals, digits), std::string_view(expected, end)) << value;
    };
    for (int i = 0; i < 100'000; ++i) {
        const int decimals = static_cast<int>(random() % 14);
        const double whole = static_cast<double>(static_cast<std::int64_t>(random()) >> random() % 64);
        const double tie = std::ldexp(whole, -static_cast<int>(random() % 75));
        const double decimal = (whole + 0.5) / std::pow(10.0, decimals);
        for (const double value : {tie, decimal, whole}) {
            check(value, decimals);
            check(std::nextafter(value, DBL_MAX), decimals);
            check(std::nextafter(value, -DBL_MAX), decimals);
        }
        const double any = std::bit_cast<double>(random());
        if (std::isfinite(any)) check(any, decimals);
    }
}
