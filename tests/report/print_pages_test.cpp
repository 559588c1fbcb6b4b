#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "report/print_pages.h"

// A4 at 600 units per inch, an inch being 1440 twips, with 6 mm to the left that cannot be printed on; a page
// whose twips pass through more than 32 bits.
TEST(PrintPages, AreasAreTwipsOfThePhysicalPage) {
    const PrinterPage a4 = {4960, 7015, 600, 600, 142, 0};
    const PageArea area = printArea(a4);
    EXPECT_EQ(std::vector({area.left, area.top, area.right, area.bottom}),
              std::vector({1440, 1440, 10464, 15396}));
    EXPECT_EQ(pageArea({2000000, 1440, 1200, 0, 0, 0}).right, 2400000);
    EXPECT_EQ(pageArea({2000000, 1440, 1200, 0, 0, 0}).bottom, 0);
    EXPECT_EQ(footerLeft(a4, 7, 51), 2159);
}

TEST(PrintPages, LinesAreCutBehindBlanksAndCommas) {
    const struct {
        std::size_t width;
        std::string text, lines;
    } cases[] = {{5, "ab cd ef\ngh", "ab |cd ef|gh|"},
                 {3, "abcdefgh", "abc|def|gh|"},
                 {4, "1,2,3", "1,2,|3|"},
                 {0, "ab", "a|b|"},
                 {9, "a\n\n b\n", "a|| b|"},
                 {2, " abc", " |ab|c|"}};
    for (const auto& [width, text, lines] : cases) {
        const auto fits = [most = width](const char*, std::size_t count) { return std::min(count, most); };
        std::string cut;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = lineLength(text.data() + at, text.size() - at, fits);
            cut += text.substr(at, length) + "|";
            at += length;
            if (at < text.size() && text[at] == '\n') ++at;
        }
        EXPECT_EQ(cut, lines) << text;
    }
}
