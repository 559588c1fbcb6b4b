#include "numeric/moments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "tests/support/failing_allocations.h"

// By hand: means 3 and 4; sums of squares 18 and 40, of products 22; 22.5 for the variable far from zero.
TEST(MeanCovarianceCorrelation, GivesMomentsWithDivisorN) {
    const double values[] = {1, 2, 1, 0, 3, 4, 4, 8, 6, 6};
    MomentMatrices moments;
    ASSERT_EQ(moments.allocate(2), success);
    EXPECT_EQ(MeanCovarianceCorrelation(values, 5, 2, moments), success);
    EXPECT_DOUBLE_EQ(moments.means[1], 4.0);
    const double covariance[] = {3.6, 4.4, 4.4, 8.0};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_DOUBLE_EQ(moments.covariance.data()[i], covariance[i]);
    EXPECT_DOUBLE_EQ(moments.sds[1], std::sqrt(8.0));
    EXPECT_DOUBLE_EQ(moments.correlation(1, 0), 22.0 / std::sqrt(18.0 * 40.0));

    MeanCovarianceCorrelation(values, 1, 2, moments);
    EXPECT_EQ(moments.means[1], 2.0);
    EXPECT_EQ(moments.covariance(1, 1), 0.0);
    EXPECT_FALSE(std::isfinite(moments.correlation(0, 0)));
    MeanCovarianceCorrelation(nullptr, 0, 2, moments);
    EXPECT_EQ(moments.means[1], 0.0);
    EXPECT_TRUE(anyDeviationBelow(moments.sds, 0.001));

    const double far[] = {1e9 + 4, 1e9 + 7, 1e9 + 13, 1e9 + 16};
    MeanCovarianceCorrelation(far, 4, 1, moments);
    EXPECT_DOUBLE_EQ(moments.covariance(0, 0), 22.5);

    EXPECT_EQ(failEachAllocation([&] { return moments.allocate(3); }), 4);
}

TEST(Moments, SmallTests) {
    for (const auto& [p, count] : {std::pair{0, 1}, {3, 1}, {4, 1}, {10, 2}, {100, 14}})
        EXPECT_EQ(DefaultFactorCount(p), count) << p;
    Block<double> sds;
    ASSERT_EQ(sds.allocate(3), success);
    sds[0] = 1.0, sds[1] = NAN, sds[2] = 0.001;
    EXPECT_FALSE(anyDeviationBelow(sds, 0.001));
    EXPECT_TRUE(anyDeviationBelow(sds, 0.0011));
    EXPECT_FALSE(allFinite(sds));
    EXPECT_TRUE(allFinite(sds.data(), 1));
}
