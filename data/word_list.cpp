#include "data/word_list.h"

int findWord(std::string_view words, std::string_view word) {
    for (int number = 1;; ++number) {
        const std::string_view each = wordOf(words, number);
        if (each.empty() || each == word) return each.empty() ? 0 : number;
    }
}

std::string_view wordOf(std::string_view words, int number) {
    for (; number > 1 && !words.empty(); --number) {
        const std::size_t bar = words.find('|');
        words.remove_prefix(bar == std::string_view::npos ? words.size() : bar + 1);
    }
    return words.substr(0, words.find('|'));
}
