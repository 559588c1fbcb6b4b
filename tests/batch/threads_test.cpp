#include "batch/threads.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Counts how often each part is computed, and by whom; the first worker ends it after a part of its own.
struct Counting final : PartedWork {
    std::vector<int> computed;
    std::vector<Index> own; // of each worker
    Index endAfter;
    Counting(Index parts, Index workers, Index end)
        : PartedWork(parts), computed(static_cast<std::size_t>(parts)),
          own(static_cast<std::size_t>(workers)), endAfter(end) {}
    void compute(Index part, Index worker) override {
        ++computed.at(static_cast<std::size_t>(part));
        ++own.at(static_cast<std::size_t>(worker));
    }
    ErrorCode advance(Index) override { return own[0] == endAfter ? stopped : success; }
};

} // namespace

TEST(Threads, ComputeEachPartOnceOrEndWithTheFirst) {
    for (const int threads : {1, 2, 7, mostThreads}) {
        Counting whole(20000, threads, 0);
        EXPECT_EQ(computeByThreads(whole, threads), success);
        EXPECT_EQ(whole.computed, std::vector<int>(20000, 1));
        Counting ended(20000, threads, 3);
        const ErrorCode code = computeByThreads(ended, threads);
        // The others may have left the first one fewer.
        EXPECT_EQ(code, ended.own[0] == 3 ? stopped : success);
        EXPECT_LE(ended.own[0], 3);
        EXPECT_TRUE(threads > 1 || ended.computed[3] == 0);
    }
}
