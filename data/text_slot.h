#pragma once

#include <cstddef>

// A cell, a variable name or a sample label: at most 62 characters and their end.
constexpr std::size_t textSlotSize = 63;
constexpr std::ptrdiff_t textSlotLength = textSlotSize - 1;
