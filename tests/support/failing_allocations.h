#pragma once

#include "numeric/block.h"

// Calls `action` with its first, its second, ... allocation failing, and `check` after each of these calls,
// until none is left that could fail. Returns how many there were.
template <class Action, class Check> long long failEachAllocation(Action action, Check check) {
    for (long long n = 1;; ++n) {
        failAllocation(n);
        action();
        const bool failed = allocationCount() >= n;
        failAllocation(0);
        if (!failed) return n - 1;
        check();
    }
}
