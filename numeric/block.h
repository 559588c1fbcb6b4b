#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdlib>
#include <type_traits>
#include <utility>

#include "numeric/error_code.h"

// Every array of a run is asked for here and answers with a code, never with an exception: a driver combines
// the codes of all its arrays, and each way out frees them. Tests hold the core to that by letting the first,
// the second, ... allocation of a run fail (failAllocation): the run then ends with outOfMemory and leaks
// nothing.

// Counts and indexes everything whose layout is not fixed by a file.
using Index = std::ptrdiff_t;

// Zero-filled memory for count items of itemSize bytes, to be given back with std::free; null when count
// is negative, the product overflows or the system has none. All memory of the core comes through here.
void* allocateZeroed(Index count, std::size_t itemSize);

// Lets a test make the n-th allocation from now fail, or the n-th and all after it (n counts from 1; 0
// switches it off).
void failAllocation(long long n, bool andLater = false);
// Allocations asked for since the last failAllocation.
long long allocationCount();

// A zero-filled array of plain items that frees itself. Memory is asked for by allocate() alone, so that a
// driver can combine the codes of all its arrays and leave by one exit.
template <class T> class Block {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    Block() = default;
    Block(Block&& other) noexcept
        : items_(std::exchange(other.items_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    Block& operator=(Block&& other) noexcept {
        std::swap(items_, other.items_);
        std::swap(size_, other.size_);
        return *this;
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block() { release(); }

    // Replaces the contents by count zero items; success or outOfMemory (then empty).
    [[nodiscard]] ErrorCode allocate(Index count) {
        release();
        if (count == 0) return success;
        items_ = static_cast<T*>(allocateZeroed(count, sizeof(T)));
        if (items_ == nullptr) return outOfMemory;
        size_ = count;
        return success;
    }

    // Enlarges to count items, keeping the present ones; success or outOfMemory (then unchanged).
    [[nodiscard]] ErrorCode grow(Index count) {
        Block larger;
        if (larger.allocate(count) != success) return outOfMemory;
        if (size_ > 0) std::copy_n(items_, size_ < count ? size_ : count, larger.items_);
        *this = std::move(larger);
        return success;
    }

    void release() {
        std::free(items_);
        items_ = nullptr;
        size_ = 0;
    }

    T* data() { return items_; }
    const T* data() const { return items_; }
    Index size() const { return size_; }
    T& operator[](Index index) {
        assert(index >= 0 && index < size_);
        return items_[index];
    }
    const T& operator[](Index index) const {
        assert(index >= 0 && index < size_);
        return items_[index];
    }
    T* begin() { return items_; }
    T* end() { return items_ + size_; }
    const T* begin() const { return items_; }
    const T* end() const { return items_ + size_; }

private:
    T* items_ = nullptr;
    Index size_ = 0;
};
