#include "data/moments/moment_names.h"

#include <algorithm>
#include <charconv>

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool equalButCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char left, char right) { return lower(left) == lower(right); });
}

Index findNameButCase(const TextView& names, std::string_view name) {
    Index found = -1, count = 0;
    for (Index i = 0; i < names.size(); ++i) {
        const std::string_view each = names[i];
        if (each == name) return i;
        if (!equalButCase(each, name)) continue;
        found = i;
        ++count;
    }
    return count == 1 ? found : -1;
}

Index placeNumber(std::string_view text) {
    Index number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size() && number > 0;
    return isWhole ? number : 0;
}
