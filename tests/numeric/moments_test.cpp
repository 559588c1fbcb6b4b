#include "numeric/moments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

MomentMatrices momentsOf(const std::vector<double>& values, int variables) {
    MomentMatrices moments;
    EXPECT_EQ(moments.allocate(variables), success);
    const int samples = static_cast<int>(values.size()) / variables;
    EXPECT_EQ(MeanCovarianceCorrelation(values.data(), samples, variables, moments), success);
    return moments;
}

} // namespace

TEST(MeanCovarianceCorrelation, GivesMomentsWithDivisorN) {
    // By hand: means 3 and 4; sums of squares 18 and 40, of products 22.
    const MomentMatrices moments = momentsOf({1, 2, 1, 0, 3, 4, 4, 8, 6, 6}, 2);
    EXPECT_DOUBLE_EQ(moments.means[0], 3.0);
    EXPECT_DOUBLE_EQ(moments.means[1], 4.0);
    EXPECT_DOUBLE_EQ(moments.covariance[0], 18.0 / 5);
    EXPECT_DOUBLE_EQ(moments.covariance[1], 22.0 / 5);
    EXPECT_DOUBLE_EQ(moments.covariance[2], 22.0 / 5);
    EXPECT_DOUBLE_EQ(moments.covariance[3], 8.0);
    EXPECT_DOUBLE_EQ(moments.sds[1], std::sqrt(8.0));
    EXPECT_NEAR(moments.correlation[0], 1.0, 1e-15);
    EXPECT_NEAR(moments.correlation[1], 22.0 / std::sqrt(18.0 * 40.0), 1e-15);
    EXPECT_EQ(moments.correlation[1], moments.correlation[2]);
}

TEST(MeanCovarianceCorrelation, KeepsItsDigitsFarFromZero) {
    const MomentMatrices moments = momentsOf({1e9 + 4, 1e9 + 7, 1e9 + 13, 1e9 + 16}, 1);
    EXPECT_DOUBLE_EQ(moments.covariance[0], 22.5);
}

TEST(MeanCovarianceCorrelation, FewSamples) {
    EXPECT_DOUBLE_EQ(momentsOf({3, 8}, 1).covariance[0], 6.25);
    const MomentMatrices single = momentsOf({3, 8}, 2);
    EXPECT_EQ(single.means[1], 8.0);
    EXPECT_EQ(single.covariance[3], 0.0);
    EXPECT_FALSE(std::isfinite(single.correlation[0]));
    MomentMatrices none = momentsOf({3, 8, 1, 5}, 2);
    EXPECT_EQ(MeanCovarianceCorrelation(nullptr, 0, 2, none), success);
    EXPECT_EQ(none.means[0], 0.0);
    EXPECT_EQ(none.covariance[1], 0.0);
    EXPECT_TRUE(anyDeviationBelow(none.sds.data(), 2, 0.001));
}

TEST(MomentMatrices, EveryFailingAllocationIsOutOfMemory) {
    MomentMatrices moments;
    for (int call = 1; call <= 4; ++call) {
        failAllocation(call);
        EXPECT_EQ(moments.allocate(3), outOfMemory) << call;
    }
    failAllocation(0);
    EXPECT_EQ(moments.allocate(3), success);
}

TEST(Moments, SmallTests) {
    for (const auto& [p, count] : {std::pair{0, 1}, {3, 1}, {4, 1}, {10, 2}, {100, 14}})
        EXPECT_EQ(DefaultFactorCount(p), count) << p;
    const double sds[] = {1.0, NAN, 0.001};
    EXPECT_FALSE(anyDeviationBelow(sds, 3, 0.001));
    EXPECT_TRUE(anyDeviationBelow(sds, 3, 0.0011));
    EXPECT_FALSE(allFinite(sds, 3));
    EXPECT_TRUE(allFinite(sds, 1));
}
