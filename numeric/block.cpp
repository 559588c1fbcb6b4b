#include "numeric/block.h"

#include <cstdint>

namespace {

long long failingCall = 0;
long long calls = 0;

} // namespace

void* allocateZeroed(std::size_t count, std::size_t itemSize) {
    if (++calls == failingCall) return nullptr;
    if (itemSize != 0 && count > SIZE_MAX / 2 / itemSize) return nullptr;
    return std::calloc(count, itemSize);
}

void failAllocation(long long n) {
    failingCall = n;
    calls = 0;
}

long long allocationCount() {
    return calls;
}
