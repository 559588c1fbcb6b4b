#include "data/text_list.h"

#include <cstdarg>
#include <cstdio>

Index TextView::characters() const {
    Index sum = 0;
    for (Index i = 0; i < size_; ++i) sum += std::ssize(std::string_view((*this)[i]));
    return sum;
}

ErrorCode TextList::allocate(Index count, Index characters) {
    release();
    if (count == 0) return success;
    const Index groups = (count + TextPlaces::groupSize - 1) / TextPlaces::groupSize;
    const ErrorCode code = offsets_.allocate(count) | groups_.allocate(groups) |
                           characters_.allocate(used_ + characters + count + spare);
    if (code != success) release();
    return code;
}

ErrorCode TextList::copy(const TextView& from) {
    const ErrorCode code = allocate(from.size(), from.characters());
    for (Index i = 0; i < size(); ++i) set(i, from[i]);
    return code;
}

void TextList::setFormat(Index i, const char* format, ...) {
    char text[textSlotSize];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    set(i, text);
}

void TextList::setReplaceable(Index i, std::string_view text) {
    const Index after = used_ + textSlotLength + 1;
    set(i, text);
    used_ = std::min(after, characters_.size() - spare);
}

void TextList::replace(Index i, std::string_view text) {
    char* const target = characters_.data() + groups_[i / TextPlaces::groupSize] + offsets_[i];
    target[text.copy(target, std::size_t{textSlotLength})] = '\0';
}
