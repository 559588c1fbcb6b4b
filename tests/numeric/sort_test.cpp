#include "numeric/sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

TEST(SortKeysWithCompanion, SortsAndCarriesTheCompanions) {
    std::mt19937 random(1);
    for (int n : {0, 1, 2, 3, 64, 1001}) {
        std::vector<double> keys;
        for (int i = 0; i < n; ++i) keys.push_back(static_cast<double>(random() % 200));
        std::vector<double> expected = keys;
        std::vector<double> companion;
        for (double key : keys) companion.push_back(-key);
        EXPECT_EQ(SortKeysWithCompanion(n, keys.data(), companion.data()), success);
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(keys, expected);
        for (std::size_t i = 0; i < keys.size(); ++i) EXPECT_EQ(companion[i], -keys[i]);
    }
}

// Both orders follow the heap by hand.
TEST(SortKeysWithCompanion, TiesLeaveInTheOrderOfTheHeap) {
    std::vector<double> keys{1, 1, 1};
    std::vector<double> companion{0, 1, 2};
    SortKeysWithCompanion(3, keys.data(), companion.data());
    EXPECT_EQ(companion, (std::vector<double>{1, 2, 0}));
    keys = {2, 1, 2, 1};
    companion = {0, 1, 2, 3};
    SortKeysWithCompanion(4, keys.data(), companion.data());
    EXPECT_EQ(companion, (std::vector<double>{1, 3, 2, 0}));
}

TEST(SortKeysWithCompanion, EndsWithKeysThatAreNotNumbers) {
    std::vector<double> keys{3, NAN, 1, NAN, INFINITY, 2};
    std::vector<double> companion{0, 1, 2, 3, 4, 5};
    EXPECT_EQ(SortKeysWithCompanion(6, keys.data(), companion.data()), success);
    std::sort(companion.begin(), companion.end());
    EXPECT_EQ(companion, (std::vector<double>{0, 1, 2, 3, 4, 5}));
}
