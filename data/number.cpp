#include "data/number.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>

#include "data/eight_bytes.h"
#include "numeric/block.h"

namespace {

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Whether digits [first, last), which lie beyond the range of a double, mean a value above 1.
bool isLarge(const char* first, const char* last) {
    long long scale = 0; // decimal places of the first significant digit, left of the point
    const char* at = first;
    while (at < last && *at == '0') ++at;
    for (; at < last && isDigit(*at); ++at) ++scale;
    if (scale == 0 && at < last && *at == '.') {
        for (++at; at < last && *at == '0'; ++at) --scale;
    }
    while (at < last && *at != 'e' && *at != 'E') ++at;
    if (at >= last) return scale > 0;
    ++at;
    const bool negative = at < last && *at == '-';
    if (at < last && (*at == '-' || *at == '+')) ++at;
    long long exponent = 0;
    for (; at < last && exponent < 1000000; ++at) exponent = 10 * exponent + (*at - '0');
    return scale + (negative ? -exponent : exponent) > 0;
}

// Whether eight characters are digits: the upper halves of the bytes are 3, and stay so when 6 is added.
bool areDigits(std::uint64_t bytes) {
    constexpr std::uint64_t upper = 0xF0F0F0F0F0F0F0F0U;
    return ((bytes & upper) | ((bytes + 0x0606060606060606U) & upper) >> 4) == 0x3333333333333333U;
}

// The number of eight digits: of pairs, then of pairs of these, in two halves at once (Lemire 2018).
std::uint64_t eightDigits(std::uint64_t bytes) {
    constexpr std::uint64_t pair = 0x000000FF000000FFU;
    bytes -= 0x3030303030303030U;
    bytes = 10 * bytes + (bytes >> 8);
    return ((bytes & pair) * (100 + (std::uint64_t{1000000} << 32)) +
            (bytes >> 16 & pair) * (1 + (std::uint64_t{10000} << 32))) >>
           32;
}

// A number without exponent of at most 18 digits that are a whole number below 2^53: both that and the power
// of ten of its decimals are doubles, so that their quotient is the nearest one to the number (Clinger 1990).
// False for any other, with what follows its digits in `last`.
template <bool hasBytesBehind> bool readShortNumber(const char* first, const char*& last, double& value) {
    constexpr Index mostDigits = 18; // which fit into 64 bits
    static constexpr double powers[mostDigits + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,
                                                      1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13,
                                                      1e14, 1e15, 1e16, 1e17, 1e18};
    std::uint64_t whole = 0;
    const char* at = first;
    for (; isDigit(*at); ++at) whole = 10 * whole + static_cast<std::uint64_t>(*at - '0');
    Index digits = at - first, decimals = 0;
    if (*at == '.') {
        const char* const point = at++;
        if constexpr (hasBytesBehind && isLowestFirst) {
            const std::uint64_t bytes = eightBytes(at);
            if (areDigits(bytes)) {
                whole = 100'000'000 * whole + eightDigits(bytes);
                at += sizeof bytes;
            }
        }
        for (; isDigit(*at); ++at) whole = 10 * whole + static_cast<std::uint64_t>(*at - '0');
        decimals = at - point - 1;
        digits += decimals;
    }
    last = at;
    if (*at == 'e' || *at == 'E' || digits > mostDigits || whole >> 53 != 0) return false;
    value = static_cast<double>(whole) / powers[decimals];
    return true;
}

template <bool hasBytesBehind> double parse(const char* text, const char** end) {
    const char* first = text;
    while (isBlank(*first)) ++first;
    const bool negative = *first == '-';
    if (negative || *first == '+') ++first;
    if (!isDigit(*first) && !(*first == '.' && isDigit(first[1]))) {
        if (end != nullptr) *end = text;
        return 0.0;
    }
    double value = 0.0;
    const char* digitsEnd = nullptr;
    if (readShortNumber<hasBytesBehind>(first, digitsEnd, value)) {
        if (end != nullptr) *end = digitsEnd;
        return negative ? -value : value;
    }
    const auto [last, error] = std::from_chars(first, digitsEnd + std::strlen(digitsEnd), value);
    if (error == std::errc::result_out_of_range) {
        value = isLarge(first, last) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    if (end != nullptr) *end = last;
    return negative ? -value : value;
}

} // namespace

double parseNumber(const char* text, const char** end) {
    return parse<false>(text, end);
}

bool isNumber(const char* text) {
    const char* end = nullptr;
    parseNumber(text, &end);
    if (end == text) return false;
    while (isBlank(*end)) ++end;
    return *end == '\0';
}

bool readCellNumber(const char* text, double& value) {
    const char* end = nullptr;
    value = parse<true>(text, &end);
    return *end == '\0' ? end != text : isNumber(text);
}
