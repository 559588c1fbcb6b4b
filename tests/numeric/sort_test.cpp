#include "numeric/sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

// The orders of ties follow the heap by hand.
TEST(SortKeysWithCompanion, SortsAndCarriesTheCompanions) {
    struct Case {
        std::vector<double> keys, companion;
    };
    for (Case item : {Case{{}, {}},
                      {{5}, {0}},
                      {{3, 1, 2, 9, -4}, {4, 1, 2, 0, 3}},
                      {{1, 1, 1}, {1, 2, 0}},
                      {{1, 2, 2}, {0, 2, 1}},
                      {{2, 1, 2, 1}, {1, 3, 2, 0}}}) {
        std::vector<double> sorted = item.keys, companion;
        for (std::size_t i = 0; i < sorted.size(); ++i) companion.push_back(static_cast<double>(i));
        EXPECT_EQ(SortKeysWithCompanion(static_cast<int>(sorted.size()), sorted.data(), companion.data()),
                  success);
        std::sort(item.keys.begin(), item.keys.end());
        EXPECT_EQ(sorted, item.keys);
        EXPECT_EQ(companion, item.companion);
    }
    double keys[] = {3, NAN, 1, NAN, INFINITY, 2}, companion[] = {0, 1, 2, 3, 4, 5};
    SortKeysWithCompanion(6, keys, companion); // ends, and loses nothing
    std::sort(companion, companion + 6);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(companion[i], i);
}
