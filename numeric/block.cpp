#include "numeric/block.h"

#include <cstdint>

namespace {

long long failingCall = 0; // from 1; 0: none
bool laterFail = false;
long long calls = 0;

} // namespace

void* allocateZeroed(Index count, std::size_t itemSize) {
    ++calls;
    if (calls == failingCall || (laterFail && calls > failingCall)) return nullptr;
    if (count < 0) return nullptr;
    const auto items = static_cast<std::size_t>(count);
    if (itemSize != 0 && items > SIZE_MAX / 2 / itemSize) return nullptr;
    return std::calloc(items, itemSize);
}

void failAllocation(long long n, bool andLater) {
    failingCall = n;
    laterFail = andLater && n > 0;
    calls = 0;
}

long long allocationCount() {
    return calls;
}
