#include <bit>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

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

// Cells take digits several at a time, whatever stands behind their end.
TEST(Number, OfACellIsTheNearestDouble) {
    std::mt19937 random(11);
    for (int trial = 0; trial < 20000; ++trial) {
        std::string text(random() % 3, '-');
        for (std::size_t k = random() % 10; k > 0; --k) text += static_cast<char>('0' + random() % 10);
        if (random() % 4 > 0) text += '.';
        for (std::size_t k = random() % 20; k > 0; --k) text += static_cast<char>('0' + random() % 10);
        if (random() % 6 == 0) text += "e-" + std::to_string(random() % 40);
        if (random() % 9 == 0) text += ":x";
        const std::string stored = text + '\0' + "1234567";
        double value = -1.0;
        const bool isWhole = readCellNumber(stored.c_str(), value);
        const double expected = std::strtod(text.c_str(), nullptr);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << text;
        EXPECT_EQ(isWhole, isNumber(text.c_str())) << text;
    }
}
