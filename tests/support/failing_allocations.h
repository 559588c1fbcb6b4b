#pragma once

#include <cstdio>
#include <gtest/gtest.h>

#include "numeric/block.h"

// Counts what failEachAllocation made fail, for the figures that script/test prints.
struct AllocationFailures {
    long long count = 0;
    ~AllocationFailures() { std::printf("figure: allocation failures tried %lld\n", count); }
};
inline AllocationFailures allocationFailures;

// Calls `action` with its first, its second, ... allocation failing, once that one alone and once all after
// it too, and `check` after each of these calls, until none is left that could fail. Returns how many there
// were.
template <class Action, class Check> long long failEachAllocation(Action action, Check check) {
    for (long long n = 1;; ++n) {
        for (const bool andLater : {false, true}) {
            failAllocation(n, andLater);
            action();
            const bool failed = allocationCount() >= n;
            failAllocation(0);
            if (!failed) return n - 1;
            ++allocationFailures.count;
            SCOPED_TRACE(testing::Message()
                         << "allocation " << n << (andLater ? " and all after it" : "") << " failed");
            check();
        }
    }
}

// The same for an action that then returns outOfMemory.
template <class Action> long long failEachAllocation(Action action) {
    ErrorCode code = success;
    return failEachAllocation([&] { code = action(); }, [&] { EXPECT_EQ(code, outOfMemory); });
}
