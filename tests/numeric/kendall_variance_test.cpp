#include "numeric/kendall_variance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

int sign(int d) {
    return (d > 0) - (d < 0);
}

TieSums tiesOf(const std::vector<int>& values) {
    TieSums sums;
    for (int v = 0; v < 10; ++v) sums.add(std::count(values.begin(), values.end(), v));
    return sums;
}

// The mean of S^2 over all orders of the second column, where equal values change places, too.
double variance(const std::vector<int>& first, const std::vector<int>& second) {
    std::vector<std::size_t> order(first.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    double squares = 0.0, orders = 0.0;
    do {
        int s = 0;
        for (std::size_t i = 0; i < order.size(); ++i)
            for (std::size_t j = 0; j < i; ++j)
                s += sign(first[i] - first[j]) * sign(second[order[i]] - second[order[j]]);
        squares += s * s;
        ++orders;
    } while (std::next_permutation(order.begin(), order.end()));
    return squares / orders;
}

} // namespace

TEST(KendallVariance, IsThatOfAllOrders) {
    const std::vector<int> columns[][2] = {{{1, 2}, {1, 2}},
                                           {{1, 2, 3, 4, 5}, {1, 2, 3, 4, 5}},
                                           {{1, 1, 2, 3, 3, 3}, {1, 2, 2, 2, 2, 4}},
                                           {{1, 1, 1, 2}, {5, 5, 5, 5}},
                                           {{3, 3}, {1, 2}}};
    for (const auto& [first, second] : columns) {
        const double value = kendallVariance(static_cast<Index>(first.size()), tiesOf(first), tiesOf(second));
        EXPECT_NEAR(value, variance(first, second), 1e-12);
    }
}
