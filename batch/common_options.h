#pragma once

#include <span>

#include "batch/usage_line.h"

// What every analysis takes.
std::span<const OptionText> commonOptions();

// The words that stand for no analysis where the name of one is looked for.
std::span<const char* const> commandWords();
