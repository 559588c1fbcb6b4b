#include "data/moments/moment_names.h"

#include <charconv>

#include "data/letter_case.h"

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
