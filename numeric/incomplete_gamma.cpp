#include "numeric/incomplete_gamma.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "numeric/saddle_point.h"

namespace {

// Both expansions need some multiple of sqrt(a) terms; this is enough for a up to 1e8 and ends in any case.
constexpr int mostTerms = 200000;
constexpr double epsilon = std::numeric_limits<double>::epsilon();

// x^a e^-x / Gamma(a + 1). For large a by the distance from x to a, so that nothing large cancels in the
// exponent (Loader 2000).
double leadingFactor(double a, double x) {
    if (a < stirlingFrom) return std::exp(a * std::log(x) - x - std::lgamma(a + 1.0));
    const double t = (x - a) / a;
    const double deviance = a * (t - std::log1p(t));
    return std::exp(-deviance - stirlingError(a)) / std::sqrt(2.0 * std::numbers::pi * a);
}

} // namespace

double lowerGammaSeries(double a, double x) {
    double term = 1.0;
    double sum = 1.0;
    for (int n = 1; n < mostTerms && term > epsilon * sum; ++n) {
        term *= x / (a + n);
        sum += term;
    }
    return sum;
}

double upperGammaFraction(double a, double x) {
    double b = x + 1.0 - a;
    double c = std::numeric_limits<double>::max();
    double d = 1.0 / b;
    double fraction = d;
    for (int n = 1; n < mostTerms; ++n) {
        const double numerator = n * (a - n);
        b += 2.0;
        d = 1.0 / (b + numerator * d);
        c = b + numerator / c;
        fraction *= c * d;
        if (std::fabs(c * d - 1.0) <= epsilon) break;
    }
    return fraction;
}

double UpperGammaRatio(double a, double x) {
    if (std::isnan(x) || !(a > 0.0)) return std::numeric_limits<double>::quiet_NaN();
    if (x <= 0.0) return 1.0;
    if (std::isinf(x)) return 0.0;
    if (x < a + 1.0) return 1.0 - leadingFactor(a, x) * lowerGammaSeries(a, x);
    return leadingFactor(a, x) * a * upperGammaFraction(a, x);
}

double ChiSquareUpperTail(double chiSquare, double df) {
    return UpperGammaRatio(df / 2.0, chiSquare / 2.0);
}
