#pragma once

#include <span>

#include "numeric/block.h"

// Plain items one after the other, in memory that doubles when it is full.
template <class T> class GrowingList {
public:
    // False without memory; the list is then unchanged.
    [[nodiscard]] bool add(const T& item) {
        if (count_ == items_.size() && items_.grow(count_ > 0 ? 2 * count_ : firstSize) != success)
            return false;
        items_[count_++] = item;
        return true;
    }
    // Keeps the memory.
    void clear() { count_ = 0; }

    Index size() const { return count_; }
    T& operator[](Index i) { return items_[i]; }
    const T& operator[](Index i) const { return items_[i]; }
    T& last() { return items_[count_ - 1]; }
    std::span<const T> part(Index first, Index count) const {
        return {items_.data() + first, items_.data() + first + count};
    }
    std::span<const T> all() const { return part(0, count_); }

private:
    static constexpr Index firstSize = 32;

    Block<T> items_;
    Index count_ = 0;
};
