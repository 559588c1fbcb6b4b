#include <cfloat>
#include <cstring>

#include "report/text_buffer.h"
#include "tests/support/cases.h"

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
    for (int i = 0; i < 1000; ++i) buffer.appendInteger(1000 + i, 0);
    EXPECT_EQ(buffer.length(), 4000u);
    EXPECT_STREQ(buffer.text() + 3992, "19981999");
    EXPECT_FALSE(buffer.ranOutOfMemory() || buffer.isCut());
}

TEST(TextBuffer, WritesNumbers) {
    for (const Case& test : readCases("report/numbers.tsv")) {
        Fixed40 buffer;
        buffer.appendNumber(std::strtod(test[0].c_str(), nullptr), std::stoi(test[1]), std::stoi(test[2]));
        EXPECT_EQ(buffer.text(), test[3]);
    }
}
