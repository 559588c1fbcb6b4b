#include <cmath>

#include <gtest/gtest.h>

#include "report/cells.h"
#include "report/json_report.h"
#include "report/markup_report.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/whole_text.h"

namespace {

struct Document : TextBuffer {
    Document() { EXPECT_EQ(allocate(16, Growth::growing), success); }
};

} // namespace

TEST(StructuredReports, TakeNothingOfATextForMarkup) {
    const struct {
        const char *text, *json, *markdown, *html;
    } cases[] = {
        {"a|b<i>&amp;", "\"a|b<i>&amp;\"", "a\\|b\\<i\\>\\&amp;", "a|b&lt;i&gt;&amp;amp;"},
        {"\"q\"\\ *_`#~$", R"("\"q\"\\ *_`#~$")", R"("q"\\ \*\_\`\#\~\$)", "&quot;q&quot;\\ *_`#~$"},
        {"[x](y)\t1\n\x01", R"("[x](y)\u00091\u000a\u0001")", "\\[x\\](y) 1 \xEF\xBF\xBD",
         "[x](y) 1 \xEF\xBF\xBD"},
        {"\xC3\xA4 \xF0\x9F\x98\x80", "\"\xC3\xA4 \xF0\x9F\x98\x80\"", "\xC3\xA4 \xF0\x9F\x98\x80",
         "\xC3\xA4 \xF0\x9F\x98\x80"},
        // Windows-1252, a byte without a character, a surrogate, a sequence that is too long, one that is
        // cut.
        {"\xE4\x80 \x81", "\"\xC3\xA4\xE2\x82\xAC \xC2\x81\"", "\xC3\xA4\xE2\x82\xAC \xEF\xBF\xBD",
         "\xC3\xA4\xE2\x82\xAC \xEF\xBF\xBD"},
        {"\xED\xA0\x80", "\"\xC3\xAD\xC2\xA0\xE2\x82\xAC\"", "\xC3\xAD\xC2\xA0\xE2\x82\xAC",
         "\xC3\xAD\xC2\xA0\xE2\x82\xAC"},
        {"\xC0\xAF\xC3", "\"\xC3\x80\xC2\xAF\xC3\x83\"", "\xC3\x80\xC2\xAF\xC3\x83",
         "\xC3\x80\xC2\xAF\xC3\x83"},
    };
    for (const auto& test : cases) {
        Document json, markdown, html;
        appendJsonText(json, test.text);
        appendMarkdownText(markdown, test.text);
        appendHtmlText(html, test.text);
        EXPECT_EQ(wholeText(json), test.json);
        EXPECT_EQ(wholeText(markdown), test.markdown);
        EXPECT_EQ(wholeText(html), test.html);
    }
    Document numbers;
    for (const double value : {0.1, -0.0, 1e300, 5e-324, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        appendJsonNumber(numbers, value);
        numbers.append(" ");
    }
    EXPECT_EQ(wholeText(numbers), "0.1 -0.0 1e+300 5e-324 \"inf\" \"-inf\" \"nan\" ");
}

// Whatever allocation fails, a report is whole or known not to be.
TEST(StructuredReports, TellThatMemoryRanOut) {
    bool complete = false;
    const auto write = [&] {
        ReportStructure structure;
        Report report;
        report.structure = &structure;
        if ((allocateReport(report, TextBuffer::Growth::growing) | structure.allocate()) != success) {
            complete = false;
            return;
        }
        writeTitle(report, "title");
        writeOptionLine(report, "-- option");
        for (int table = 0; table < 40; ++table) {
            writeCaption(report, "caption");
            writeCaption(report, "-- note");
            for (int row = 0; row < 40; ++row) {
                startRow(report, row, "label\xC3\xA4", 6);
                writeText(report, "text", 4);
                writeInteger(report, row, 4);
                endRow(report);
            }
        }
        complete = isComplete(report);
        if (!complete) return;
        Index cells = 0;
        for (const StructureTable& table : structure.tables(structure.parts().front())) {
            for (const StructureRow& row : structure.rows(table)) {
                EXPECT_EQ(row.label.shown(), "label"); // no half of a character
                cells += std::ssize(structure.cells(row));
            }
        }
        EXPECT_EQ(cells, 40 * 40 * 2);
    };
    // Of the text's three buffers, the structure's texts and its lists, most of which grow several times.
    EXPECT_GT(failEachAllocation(write, [&] { EXPECT_FALSE(complete); }), 20);
    EXPECT_TRUE(complete);
}
