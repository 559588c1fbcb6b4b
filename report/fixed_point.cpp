#include "report/fixed_point.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace {

// Whole numbers of 128 bits, which the compilers have but the language does not.
__extension__ using Long = unsigned __int128;

constexpr int mostDecimals = 12;
constexpr int fractionBits = 52;

constexpr std::array<std::uint64_t, 20> powersOfTen = []() {
    std::array<std::uint64_t, 20> powers = {1};
    for (std::size_t k = 1; k < powers.size(); ++k) powers[k] = 10 * powers[k - 1];
    return powers;
}();

// "00", "01", ... "99".
constexpr std::array<char, 200> pairs = []() {
    std::array<char, 200> digits = {};
    for (std::size_t k = 0; k < 100; ++k) {
        digits[2 * k] = static_cast<char>('0' + k / 10);
        digits[2 * k + 1] = static_cast<char>('0' + k % 10);
    }
    return digits;
}();

// The bits tell it but for one.
int digitCount(std::uint64_t units) {
    const int bits = static_cast<int>(std::bit_width(units | 1));
    const int digits = bits * 1233 >> 12; // log10(2) is 1233 / 4096
    return digits + static_cast<int>((units | 1) >= powersOfTen[static_cast<std::size_t>(digits)]);
}

// The last `count` digits of a number, which is left without them.
char* putDigits(std::uint64_t& units, int count, char* end) {
    for (; count >= 2; count -= 2) {
        end -= 2;
        std::memcpy(end, pairs.data() + 2 * (units % 100), 2);
        units /= 100;
    }
    if (count > 0) {
        *--end = static_cast<char>('0' + units % 10);
        units /= 10;
    }
    return end;
}

// A product below 2^93 shifted right, rounded; false when that passes 63 bits.
bool roundShifted(Long product, int shift, std::uint64_t& units) {
    const auto high = static_cast<std::uint64_t>(product >> 64), low = static_cast<std::uint64_t>(product);
    std::uint64_t rest = 0; // as a fraction of 2^64
    bool isMore = false;    // than that
    if (shift < 64) {
        if (high >> (shift - 1) != 0) return false;
        units = high << (64 - shift) | low >> shift;
        rest = low << (64 - shift);
    } else if (shift == 64) {
        units = high;
        rest = low;
    } else if (shift < 128) {
        units = high >> (shift - 64);
        rest = high << (128 - shift) | low >> (shift - 64);
        isMore = low << (128 - shift) != 0;
    } else { // less than half a unit
        units = 0;
    }
    constexpr std::uint64_t half = std::uint64_t{1} << 63;
    units += static_cast<std::uint64_t>(rest > half || (rest == half && (isMore || units % 2 == 1)));
    return true;
}

} // namespace

bool toFixedPoint(double value, int decimals, FixedPoint& number) {
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(value);
    const int exponent = static_cast<int>(bits >> fractionBits & 0x7FF);
    // The value is `fraction` shifted right by so many bits.
    const int shift = fractionBits + 1023 - std::max(exponent, 1);
    if (shift <= 0 || decimals < 0 || decimals > mostDecimals) return false;
    constexpr std::uint64_t hidden = std::uint64_t{1} << fractionBits; // the bit of all but the smallest
    const std::uint64_t fraction = (bits & (hidden - 1)) | (exponent > 0 ? hidden : 0);
    const Long product = Long{fraction} * powersOfTen[static_cast<std::size_t>(decimals)]; // below 2^93
    if (!roundShifted(product, shift, number.units)) return false;
    number.decimals = decimals;
    number.isNegative = bits >> 63 != 0;
    number.length = std::max(digitCount(number.units), decimals + 1) + static_cast<int>(decimals > 0) +
                    static_cast<int>(number.isNegative);
    return true;
}

void putFixedPoint(const FixedPoint& number, char* end) {
    std::uint64_t units = number.units;
    char* const start = end - number.length;
    *start = '-'; // a digit takes its place where there is no sign
    if (number.decimals > 0) {
        end = putDigits(units, number.decimals, end);
        *--end = '.';
    }
    putDigits(units, static_cast<int>(end - start) - static_cast<int>(number.isNegative), end);
}
