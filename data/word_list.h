#pragma once

#include <string_view>

// Lists that are one text: of words to choose from, as "comma|semicolon|tab", and of what a user names, as
// "a,b".

// The number of a word in a list to choose from, from 1; 0 when it is none of them.
int findWord(std::string_view words, std::string_view word);
// The word with a number from 1; empty behind the last.
std::string_view wordOf(std::string_view words, int number);

// Calls `use` with each part between commas, an empty one too, until it is false; whether it never was.
template <class Use> bool forEachNamed(std::string_view list, Use use) {
    for (;;) {
        const std::size_t comma = list.find(',');
        if (!use(list.substr(0, comma))) return false;
        if (comma == std::string_view::npos) return true;
        list.remove_prefix(comma + 1);
    }
}
