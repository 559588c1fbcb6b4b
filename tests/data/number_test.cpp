#include <bit>
#include <clocale>
#include <cstdint>
#include <cstdlib>

#include "data/number.h"
#include "tests/support/cases.h"

TEST(Number, IsWhatATextBeginsWith) {
    const std::vector<Case> cases = readCases("data/numbers.tsv");
    for (const Case& test : cases) {
        SCOPED_TRACE(test[0]);
        const double expected = std::strtod(test[1].c_str(), nullptr);
        // Where such a locale is installed, the point stays the decimal point.
        for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C"}) {
            std::setlocale(LC_ALL, locale);
            const char* end = nullptr;
            const double value = parseNumber(test[0].c_str(), &end);
            EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << value;
            EXPECT_EQ(std::to_string(end - test[0].c_str()), test[2]);
            EXPECT_EQ(isNumber(test[0].c_str()), test[3] == "number");
        }
    }
}
