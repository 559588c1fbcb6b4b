#pragma once

#include <string>

#include "report/text_buffer.h"

// A text with all of its pieces.
inline std::string wholeText(const TextBuffer& text) {
    std::string whole;
    for (const std::string_view piece : text) whole += piece;
    return whole;
}
