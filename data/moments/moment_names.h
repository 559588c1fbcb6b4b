#pragma once

#include <string_view>

#include "data/text_list.h"

// The place of a name: that of the same text, else of the only one that differs by case alone, which engines
// change; -1 without.
Index findNameButCase(const TextView& names, std::string_view name);

// A whole number from 1 on that is all of a text; 0 for any other text.
Index placeNumber(std::string_view text);
