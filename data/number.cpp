#include "data/number.h"

#include <charconv>
#include <cstring>
#include <limits>

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

} // namespace

double parseNumber(const char* text, const char** end) {
    const char* first = text;
    while (isBlank(*first)) ++first;
    const bool negative = *first == '-';
    if (negative || *first == '+') ++first;
    if (!isDigit(*first) && !(*first == '.' && isDigit(first[1]))) {
        if (end != nullptr) *end = text;
        return 0.0;
    }
    double value = 0.0;
    const auto [last, error] = std::from_chars(first, first + std::strlen(first), value);
    if (error == std::errc::result_out_of_range) {
        value = isLarge(first, last) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    if (end != nullptr) *end = last;
    return negative ? -value : value;
}

bool isNumber(const char* text) {
    const char* end = nullptr;
    parseNumber(text, &end);
    if (end == text) return false;
    while (isBlank(*end)) ++end;
    return *end == '\0';
}
