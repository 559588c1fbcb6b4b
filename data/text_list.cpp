#include "data/text_list.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

void TextList::set(Index i, const char* text) {
    char* const slot = slots_[i].text;
    const std::size_t length = strnlen(text, textSlotSize - 1);
    std::memcpy(slot, text, length);
    slot[length] = '\0';
}

void TextList::setFormat(Index i, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(slots_[i].text, textSlotSize, format, arguments);
    va_end(arguments);
}
