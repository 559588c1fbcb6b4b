#include "analysis/multivariate/canonical/canonical_tests.h"

#include <cmath>

namespace {

// What both tests multiply by. Half of the variables is taken as a whole number, which is kept so that
// reports stay comparable.
double classicMultiplier(const CanonicalSizes& sizes) {
    const Index half = (sizes.q1 + sizes.q2) / 2;
    return sizes.samples - 1.5 - static_cast<double>(half);
}

double textbookMultiplier(const CanonicalSizes& sizes) {
    return sizes.samples - 1.5 - static_cast<double>(sizes.q1 + sizes.q2) / 2.0;
}

// Bartlett's chi-squares with Lawley's correction.
void testBartlett(const Numerics& numerics, const CanonicalSizes& sizes, double multiplier,
                  const Block<double>& squares, CanonicalTests& tests) {
    const Index m = tests.wilks.size();
    double product = 1.0;
    for (Index k = m; k-- > 0;) {
        product *= 1.0 - squares[k];
        tests.wilks[k] = product;
    }
    double factor = multiplier;
    for (Index k = 0; k < m; ++k) {
        if (k > 0) factor = factor - 1.0 + 1.0 / squares[k - 1];
        tests.chiSquare[k] = -factor * std::log(tests.wilks[k]);
        tests.freedom[k] = static_cast<double>((sizes.q1 - k) * (sizes.q2 - k));
    }
    numerics.chiSquareTails(m, tests.chiSquare.data(), tests.freedom.data(), tests.chiProbability.data());
}

// The exponent of Rao's F: 1 where q1 q2 <= 2.
double raoExponent(const CanonicalSizes& sizes) {
    const double q1 = static_cast<double>(sizes.q1), q2 = static_cast<double>(sizes.q2);
    const double both = q1 * q2;
    return both <= 2.0 ? 1.0 : std::sqrt((both * both - 4.0) / (q1 * q1 + q2 * q2 - 5.0));
}

// Rao's F for all correlations at once (Rao 1951), without its second degrees of freedom, which are returned
// as they are.
double findRaoF(const CanonicalSizes& sizes, double multiplier, CanonicalTests& tests) {
    const double s = raoExponent(sizes);
    const double root = std::pow(tests.wilks[0], 1.0 / s);
    const double t = s * multiplier + 1.0 - tests.raoFreedom1 / 2.0;
    tests.raoF = (1.0 - root) * t / (tests.raoFreedom1 * root);
    return t;
}

void findRaoProbability(const Numerics& numerics, CanonicalTests& tests) {
    numerics.fTails(1, &tests.raoF, &tests.raoFreedom1, &tests.raoFreedom2, &tests.raoProbability);
}

void testClassicRao(const CanonicalSizes& sizes, double multiplier, CanonicalTests& tests) {
    if (tests.raoFreedom1 <= 2.0) return;
    tests.raoFreedom2 = std::trunc(findRaoF(sizes, multiplier, tests));
    findRaoProbability(classicNumerics, tests);
}

void testTextbookRao(const CanonicalSizes& sizes, double multiplier, CanonicalTests& tests) {
    tests.raoFreedom2 = findRaoF(sizes, multiplier, tests);
    findRaoProbability(textbookNumerics, tests);
}

} // namespace

ErrorCode CanonicalTests::allocate(Index m) {
    return wilks.allocate(m) | chiSquare.allocate(m) | chiProbability.allocate(m) | freedom.allocate(m);
}

void findCanonicalTests(const Numerics& numerics, const CanonicalSizes& sizes, const Block<double>& squares,
                        CanonicalTests& tests) {
    const double multiplier = (numerics.textbook ? textbookMultiplier : classicMultiplier)(sizes);
    testBartlett(numerics, sizes, multiplier, squares, tests);
    tests.raoFreedom1 = static_cast<double>(sizes.q1) * static_cast<double>(sizes.q2);
    (numerics.textbook ? testTextbookRao : testClassicRao)(sizes, multiplier, tests);
}
