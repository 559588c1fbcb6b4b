#include "analysis/multivariate/factor_rotation.h"

#include <cmath>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/failing_allocations.h"

namespace {

// Eight variables on three principal components.
const std::vector<double> loadings = {-0.726, -0.433, -0.001, -0.688, -0.350, 0.005,  -0.724, -0.350,
                                      0.040,  -0.634, -0.452, -0.023, -0.705, 0.430,  -0.198, -0.743,
                                      0.359,  0.105,  -0.609, 0.447,  -0.502, -0.567, 0.449,  0.617};
constexpr std::size_t p = 8, m = 3;

// Sums over the variables of the products of squares of two columns, less gamma / p times the product of
// sums.
double columnProduct(const double* v, std::size_t k, std::size_t l, double gamma) {
    double both = 0, first = 0, second = 0;
    for (std::size_t j = 0; j < p; ++j) {
        const double a = v[j * m + k] * v[j * m + k], b = v[j * m + l] * v[j * m + l];
        both += a * b, first += a, second += b;
    }
    return both - gamma / static_cast<double>(p) * first * second;
}

double orthomax(const double* v, double gamma) {
    return columnProduct(v, 0, 0, gamma) + columnProduct(v, 1, 1, gamma) + columnProduct(v, 2, 2, gamma);
}

double oblimin(const double* v, double gamma) {
    return columnProduct(v, 0, 1, gamma) + columnProduct(v, 0, 2, gamma) + columnProduct(v, 1, 2, gamma);
}

// Element (i, j) of a b', rows of m elements.
double inner(const double* a, const double* b, std::size_t i, std::size_t j) {
    return std::inner_product(a + i * m, a + (i + 1) * m, b + j * m, 0.0);
}

} // namespace

// The greatest values that a general optimiser over the three angles finds; forty starts agree.
TEST(OrthogonalRotation, ReachesTheGreatestCriterionAndKeepsTheProducts) {
    const struct {
        double gamma, best;
    } cases[] = {{1.0, 1.9208800678}, {0.5, 2.6447941310}, {0.0, 3.3808654443}};
    for (const auto& one : cases) {
        std::vector<double> rotated = loadings;
        rotateOrthogonal(p, m, one.gamma, rotated.data());
        EXPECT_NEAR(orthomax(rotated.data(), one.gamma), one.best, 1e-8) << one.gamma;
        for (std::size_t i = 0; i < p; ++i) {
            for (std::size_t j = 0; j < p; ++j) {
                EXPECT_NEAR(inner(rotated.data(), rotated.data(), i, j),
                            inner(loadings.data(), loadings.data(), i, j), 1e-14);
            }
        }
    }
}

// Two pure factors turned by an angle: the rotation finds them again, in each of the quadrants of its angle.
TEST(OrthogonalRotation, FindsSimpleStructureAtAnyAngle) {
    for (const double degrees : {-40, -10, 3, 30, 44, 60, 100}) {
        const double c = std::cos(degrees / 57.29577951308232), s = std::sin(degrees / 57.29577951308232);
        double turned[] = {0.9 * c, 0.9 * s, 0.7 * c, 0.7 * s, -0.8 * s, 0.8 * c, -0.6 * s, 0.6 * c};
        rotateOrthogonal(4, 2, 1.0, turned);
        for (std::size_t j = 0; j < 4; ++j) {
            EXPECT_NEAR(turned[2 * j] * turned[2 * j + 1], 0.0, 1e-14) << degrees;
        }
    }
}

// No angle is better than another when both numerator and denominator are 0; nothing then turns, and what is
// not a number ends.
TEST(OrthogonalRotation, LeavesWhatHasNoAngle) {
    double zeros[] = {0, 0, 0, 0};
    rotateOrthogonal(2, 2, 1.0, zeros);
    EXPECT_EQ(zeros[0], 0.0);
    double invalid[] = {NAN, 1, 2, 3};
    rotateOrthogonal(2, 2, 1.0, invalid);
    EXPECT_EQ(invalid[2], 2.0);
}

// The least values that a general optimiser over the unit vectors finds from the same start and from forty
// more.
TEST(ObliqueRotation, ReachesTheLeastCriterion) {
    const struct {
        double gamma, best, correlations;
    } cases[] = {
        {1.0, -0.9401504349, 0.036877}, {0.5, -0.3438763549, 0.086723}, {0.0, 0.0530967257, 0.296647}};
    for (const auto& one : cases) {
        ObliqueRotation rotation;
        ASSERT_EQ(rotation.allocate(p, m), success);
        ASSERT_EQ(rotateOblique(p, m, one.gamma, loadings.data(), rotation), success);
        ASSERT_EQ(findPattern(p, m, rotation), success);
        EXPECT_NEAR(oblimin(rotation.structure.data(), one.gamma), one.best, 1e-9) << one.gamma;
        const double* phi = rotation.correlations.data();
        EXPECT_NEAR(phi[1] * phi[1] + phi[2] * phi[2] + phi[5] * phi[5], one.correlations, 1e-5);
        for (std::size_t k = 0; k < m; ++k) EXPECT_NEAR(phi[k * (m + 1)], 1.0, 1e-14);
        // The pattern and the correlations of the factors give the products of the loadings back: P Phi = V
        // and P V' = A A'.
        for (std::size_t i = 0; i < p; ++i) {
            for (std::size_t k = 0; k < m; ++k) {
                EXPECT_NEAR(inner(rotation.pattern.data(), phi, i, k), rotation.structure[i * m + k], 1e-13);
            }
            for (std::size_t j = 0; j < p; ++j) {
                EXPECT_NEAR(inner(rotation.pattern.data(), rotation.structure.data(), i, j),
                            inner(loadings.data(), loadings.data(), i, j), 1e-13);
            }
        }
    }
}

TEST(ObliqueRotation, SimpleStructureStaysWithItsSigns) {
    const double simple[] = {0.9, 0, -0.7, 0, 0, 0.8, 0, -0.6};
    ObliqueRotation rotation;
    ASSERT_EQ(rotation.allocate(4, 2), success);
    ASSERT_EQ(rotateOblique(4, 2, 0.0, simple, rotation), success);
    for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(rotation.structure[i], simple[i], 1e-15);
}

// The diagonal of the inverse is 1 / (1 - r^2): 5e5 still counts, 5e6 does not.
TEST(ObliqueRotation, RefusesFactorsThatAreNearlyOne) {
    ObliqueRotation rotation;
    ASSERT_EQ(rotation.allocate(1, 2), success);
    const auto codeOf = [&](double r) {
        rotation.correlations[0] = rotation.correlations[3] = 1.0;
        rotation.correlations[1] = rotation.correlations[2] = r;
        return findPattern(1, 2, rotation);
    };
    EXPECT_EQ(codeOf(1 - 1e-6), success);
    EXPECT_EQ(codeOf(1 - 1e-7), singularMatrix);
    EXPECT_EQ(codeOf(1), singularMatrix);
    EXPECT_EQ(codeOf(2), singularMatrix);
    EXPECT_EQ(codeOf(NAN), singularMatrix);
    EXPECT_EQ(rotation.allocate(1, 2000000000), outOfMemory);
}
