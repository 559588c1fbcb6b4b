#pragma once

#include "data/printf_format.h"
#include "data/text_slot.h"
#include "numeric/block.h"

// Texts by number: the names of variables, the labels of samples. Each keeps its first 62 characters and is
// empty until it is set.
class TextList {
public:
    [[nodiscard]] ErrorCode allocate(Index count) { return slots_.allocate(count); }
    void release() { slots_.release(); }

    Index size() const { return slots_.size(); }
    const char* operator[](Index i) const { return slots_[i].text; }

    void set(Index i, const char* text);
    [[gnu::format(PRINTF_KIND, 3, 4)]] void setFormat(Index i, const char* format, ...);

private:
    Block<TextSlot> slots_;
};
