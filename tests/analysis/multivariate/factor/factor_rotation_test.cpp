#include "analysis/multivariate/factor/factor_rotation.h"

#include <cmath>
#include <numeric>
#include <vector>

#include "tests/support/recording_frontend.h"

namespace {

// Eight variables on three principal components.
const std::vector<double> loadings = {-0.726, -0.433, -0.001, -0.688, -0.350, 0.005,  -0.724, -0.350,
                                      0.040,  -0.634, -0.452, -0.023, -0.705, 0.430,  -0.198, -0.743,
                                      0.359,  0.105,  -0.609, 0.447,  -0.502, -0.567, 0.449,  0.617};
constexpr std::size_t p = 8, m = 3;

Matrix matrixFrom(Index rows, Index columns, const std::vector<double>& elements) {
    Matrix matrix;
    EXPECT_EQ(matrix.allocate(rows, columns), success);
    std::copy(elements.begin(), elements.end(), matrix.begin());
    return matrix;
}

// The sums over the variables of the products of squares of two columns, less gamma / p times the product of
// sums; over each column with itself or over the pairs of columns.
double criterion(const double* v, double gamma, bool ofPairs) {
    double result = 0;
    for (std::size_t at = 0; at < m * m; ++at) {
        const std::size_t k = at / m, l = at % m;
        if (ofPairs ? k >= l : k != l) continue;
        double both = 0, first = 0, second = 0;
        for (const double* row = v; row < v + p * m; row += m) {
            const double ofK = row[k] * row[k], ofL = row[l] * row[l];
            both += ofK * ofL, first += ofK, second += ofL;
        }
        result += both - gamma / static_cast<double>(p) * first * second;
    }
    return result;
}

// Compares a b' with c d', of `rows` rows in b and d.
void expectProducts(const double* a, const double* b, const double* c, const double* d, std::size_t rows) {
    for (std::size_t i = 0; i < p * rows; ++i) {
        const std::size_t left = i / rows * m, right = i % rows * m;
        EXPECT_NEAR(std::inner_product(a + left, a + left + m, b + right, 0.0),
                    std::inner_product(c + left, c + left + m, d + right, 0.0), 1e-13);
    }
}

} // namespace

// The greatest and the least value that a general optimiser finds, over the three angles and over the unit
// vectors; forty starts agree.
TEST(FactorRotation, ReachesTheBestCriterionAndKeepsTheProducts) {
    const struct {
        double gamma, orthogonal, oblique, correlations;
    } cases[] = {{1.0, 1.9208800678, -0.9401504349, 0.036877},
                 {0.5, 2.6447941310, -0.3438763549, 0.086723},
                 {0.0, 3.3808654443, 0.0530967257, 0.296647}};
    const Matrix unrotated = matrixFrom(p, m, loadings);
    const double* const given = unrotated.data();
    for (const auto& one : cases) {
        Matrix rotated = matrixFrom(p, m, loadings);
        EXPECT_GT(largestTurnLeft(one.gamma, rotated), 0.1);
        ASSERT_EQ(rotateOrthogonal(classicNumerics, one.gamma, rotated), success);
        EXPECT_NEAR(criterion(rotated.data(), one.gamma, false), one.orthogonal, 1e-8) << one.gamma;
        expectProducts(rotated.data(), rotated.data(), given, given, p);

        ObliqueRotation rotation;
        ASSERT_EQ(rotation.allocate(p, m), success);
        RecordingFrontend frontend;
        ASSERT_EQ(rotateOblique(frontend, classicNumerics, one.gamma, unrotated, rotation), success);
        const std::vector<int>& percentages = frontend.percentages; // one after each round
        EXPECT_TRUE(percentages.size() > 2 && std::ranges::is_sorted(percentages));
        EXPECT_TRUE(percentages.front() >= 40 && percentages.back() == 60);
        ASSERT_EQ(findPattern(rotation), success);
        const double *phi = rotation.correlations.data(), *pattern = rotation.pattern.data(),
                     *structure = rotation.structure.data();
        EXPECT_NEAR(criterion(structure, one.gamma, true), one.oblique, 1e-9) << one.gamma;
        EXPECT_NEAR(phi[1] * phi[1] + phi[2] * phi[2] + phi[5] * phi[5], one.correlations, 1e-5);
        for (std::size_t k = 0; k < m; ++k) EXPECT_NEAR(phi[k * (m + 1)], 1.0, 1e-14);
        // P Phi = V and P V' = A A'.
        const double unit[] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
        expectProducts(pattern, phi, structure, unit, m);
        expectProducts(pattern, structure, given, given, p);
    }
}

// The correlations of the primary factors from an independent computation of the same axes to 1e-13; pattern
// and structure reproduce A A'.
TEST(FactorRotation, TextbookRotationsGoToTheEnd) {
    const struct {
        double gamma, correlations[3]; // of factors 2 and 1, 3 and 1, 3 and 2
    } cases[] = {{1.0, {0.0645145031, 0.0410785105, -0.1667208273}},
                 {0.5, {-0.2205753158, -0.1896484076, 0.2009257010}},
                 {0.0, {-0.3667898777, 0.4305662878, -0.4984366953}}};
    const Matrix unrotated = matrixFrom(p, m, loadings);
    const double* const given = unrotated.data();
    for (const auto& one : cases) {
        Matrix rotated = matrixFrom(p, m, loadings);
        ASSERT_EQ(rotateOrthogonal(textbookNumerics, one.gamma, rotated), success);
        EXPECT_LT(largestTurnLeft(one.gamma, rotated), 1e-12);
        expectProducts(rotated.data(), rotated.data(), given, given, p);

        RecordingFrontend frontend;
        ObliqueRotation rotation;
        ASSERT_EQ(rotation.allocate(p, m), success);
        ASSERT_EQ(rotateOblique(frontend, textbookNumerics, one.gamma, unrotated, rotation), success);
        ASSERT_EQ(findPrimaryFactors(rotation), success);
        const double* phi = rotation.correlations.data();
        const double found[] = {phi[3], phi[6], phi[7]};
        for (std::size_t at = 0; at < m; ++at)
            EXPECT_NEAR(found[at], one.correlations[at], 1e-9) << one.gamma;
        expectProducts(rotation.pattern.data(), rotation.structure.data(), given, given, p);
    }
}

TEST(ObliqueRotation, SimpleStructureStaysWithItsSigns) {
    const Matrix simple = matrixFrom(4, 2, {0.9, 0, -0.7, 0, 0, 0.8, 0, -0.6});
    RecordingFrontend frontend;
    ObliqueRotation rotation;
    ASSERT_EQ(rotation.allocate(4, 2), success);
    ASSERT_EQ(rotateOblique(frontend, classicNumerics, 0.0, simple, rotation), success);
    for (Index i = 0; i < 8; ++i) EXPECT_NEAR(rotation.structure.data()[i], simple.data()[i], 1e-15);
}

// The diagonal of the inverse is 1 / (1 - r^2): 5e5 still counts, 5e6 does not.
TEST(ObliqueRotation, RefusesFactorsThatAreNearlyOne) {
    ObliqueRotation rotation;
    ASSERT_EQ(rotation.allocate(1, 2), success);
    for (const double r : {1 - 1e-6, 1 - 1e-7, 1.0, 2.0, static_cast<double>(NAN)}) {
        rotation.correlations = matrixFrom(2, 2, {1.0, r, r, 1.0});
        EXPECT_EQ(findPattern(rotation), r == 1 - 1e-6 ? success : singularMatrix) << r;
    }
    EXPECT_EQ(rotation.allocate(1, 2000000000), outOfMemory);
    // Of two variables on three factors the axis at right angles to both is the best for every factor: the
    // first round finds it twice.
    RecordingFrontend frontend;
    const Matrix two = matrixFrom(2, 3, {0.9, 0.3, 0.2, 0.1, 0.8, 0.4});
    ASSERT_EQ(rotation.allocate(2, 3), success);
    EXPECT_EQ(rotateOblique(frontend, classicNumerics, 0.0, two, rotation), singularMatrix);
    EXPECT_TRUE(frontend.percentages.empty());
}
