#include "numeric/chi_square_distribution.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "numeric/incomplete_gamma.h"
#include "numeric/saddle_point.h"
#include "numeric/wide.h"

namespace {

// Q(a, x) for 0 < x < infinity, as UpperGammaRatio has it below integrableFrom, but for the exponent.
double upperGamma(double a, double x) {
    const Wide distance = (Wide(x) - a) / a;
    const Wide density = std::exp(-a * deviance(distance, Wide(x) / a)) *
                         (std::sqrt(a / (2.0 * std::numbers::pi)) / stirlingFactor(a)); // x^a e^-x / Gamma(a)
    if (a < integrableFrom) {
        if (x < a + 1.0) return static_cast<double>(1 - density / a * lowerGammaSeries(a, x));
        return static_cast<double>(density * upperGammaFraction(a, x));
    }
    if (x < a) return static_cast<double>(1 - density * tailIntegral(a - x, a, -1.0, 0.0, 0.0));
    return static_cast<double>(density * tailIntegral(x - a, a, 1.0, 0.0, 0.0));
}

} // namespace

double chiSquareTail(double chiSquare, double df) {
    if (std::isnan(chiSquare) || !(df > 0.0)) return std::numeric_limits<double>::quiet_NaN();
    if (chiSquare <= 0.0) return 1.0;
    if (std::isinf(chiSquare)) return 0.0;
    return upperGamma(std::clamp(df, 1e-300, 1e300) / 2.0, chiSquare / 2.0);
}
