#include "numeric/sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

// The orders of ties follow the heap by hand.
TEST(SortKeysWithCompanion, SortsAndCarriesTheCompanions) {
    // clang-format off
    const std::pair<std::vector<double>, std::vector<double>> cases[] = {
        {{}, {}}, {{5}, {0}}, {{3, 1, 2, 9, -4}, {4, 1, 2, 0, 3}}, {{1, 1, 1}, {1, 2, 0}},
        {{1, 2, 2}, {0, 2, 1}}, {{2, 1, 2, 1}, {1, 3, 2, 0}}};
    // clang-format on
    for (const auto& [given, expected] : cases) {
        std::vector<double> sorted = given, companion(given.size());
        std::iota(companion.begin(), companion.end(), 0.0);
        const int count = static_cast<int>(given.size());
        EXPECT_EQ(SortKeysWithCompanion(count, sorted.data(), companion.data()), success);
        EXPECT_EQ(companion, expected);
        for (std::size_t i = 0; i < given.size(); ++i)
            EXPECT_EQ(sorted[i], given[static_cast<std::size_t>(expected[i])]);
        EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
    }
    double keys[] = {3, NAN, 1, NAN, INFINITY, 2}, companion[] = {0, 1, 2, 3, 4, 5};
    SortKeysWithCompanion(6, keys, companion); // ends, and loses nothing
    std::sort(companion, companion + 6);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(companion[i], i);
}

TEST(FindAscendingOrder, KeepsTheOrderOfEqualValues) {
    std::mt19937 random(11);
    const double some[] = {0.0, -0.0, 1.0, -1.0, 1e-310, -1e-310, 3e300, -3e300, INFINITY, -INFINITY, 0.1};
    for (const int count : {0, 1, 2, 700}) {
        std::vector<double> values(static_cast<std::size_t>(count));
        for (double& value : values) value = some[random() % 11] * static_cast<double>(1 + random() % 3);
        std::vector<std::uint32_t> expected(values.size()), order(values.size());
        std::iota(expected.begin(), expected.end(), 0U);
        std::stable_sort(expected.begin(), expected.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return values[a] < values[b]; });
        std::vector<SortItem> scratch(2 * values.size());
        findAscendingOrder(values.data(), static_cast<std::uint32_t>(count), scratch.data(), order.data());
        EXPECT_EQ(order, expected);
    }
}
