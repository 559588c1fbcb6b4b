#include "numeric/f_distribution.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "numeric/normal_distribution.h"
#include "numeric/saddle_point.h"
#include "numeric/wide.h"

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

// I_x(a, b) B(a, b) / (x^a y^b) for x up to a / (a + b), y = 1 - x and excess = a - (a + b) x: a continued
// fraction (DiDonato and Morris 1992), from the front (modified Lentz: Thompson and Barnett 1986). Takes some
// 20 terms, and near x = a / (a + b) up to a few times the root of the smaller parameter.
double betaFraction(double a, double b, double x, double y, double excess) {
    constexpr int mostTerms = 1000;
    double fraction = a * (excess + 1.0) / (a + 1.0);
    double c = fraction;
    double d = 0.0;
    for (int n = 1; n < mostTerms; ++n) {
        const double middle = a + 2.0 * n - 1.0;
        const double share = n * (b - n) * x / middle;
        const double numerator = share * (a + n - 1.0) * ((a + b + n - 1.0) * x / middle);
        const double denominator = n + share + (a + n) * (excess + 1.0 + n * (1.0 + y)) / (middle + 2.0);
        d = 1.0 / (denominator + numerator * d);
        c = denominator + numerator / c;
        fraction *= c * d;
        if (std::fabs(c * d - 1.0) <= epsilon) break;
    }
    return 1.0 / fraction;
}

struct FPoint {
    Wide upper;   // the tail
    Wide density; // its fall with ln f
};

// F with 2 a and 2 b degrees of freedom at 0 < f < infinity: the upper tail is I_y(b, a) with y = b / (a f +
// b).
FPoint fPoint(Wide f, double a, double b) {
    constexpr double least = 1e-300,
                     most = 1e25; // from there it is the limit distribution, to the last digit
    a = std::clamp(a, least, most);
    b = std::clamp(b, least, most);
    // Without overflow: x = a f / (a f + b) = 1 - y, and how far both are, as a share, from where f is 1.
    const bool isUpper = f >= 1.0;
    const Wide partOfX = isUpper ? Wide(a) : a * f;
    const Wide partOfY = isUpper ? b / f : Wide(b);
    const Wide gap = isUpper ? (f - 1) / f : f - 1;
    const Wide sum = partOfX + partOfY;
    const Wide x = partOfX / sum, y = partOfY / sum;
    const Wide u = gap * b / sum, v = -gap * a / sum;
    const Wide both = Wide(a) + b;

    const Wide exponent = a * deviance(u, x * both / a) + b * deviance(v, y * both / b);
    const double atOne = stirlingFactor(a + b) / (stirlingFactor(a) * stirlingFactor(b)) *
                         std::sqrt(a / (a + b) * b / (2.0 * std::numbers::pi));
    const Wide density = atOne * std::exp(-exponent); // x^a y^b / B(a, b)

    // The smaller tail, as I_p(first, second) of p = 1 - q.
    const auto p = static_cast<double>(isUpper ? y : x), q = static_cast<double>(isUpper ? x : y);
    const double first = isUpper ? b : a, second = isUpper ? a : b;
    const auto excess = static_cast<double>(isUpper ? -b * v : -a * u);
    const double ratio = std::min(a, b) < integrableFrom
                             ? betaFraction(first, second, p, q, excess)
                             : tailIntegral(excess / q, first, -1.0, second, p / q) / q;
    const Wide tail = density * ratio;
    return {isUpper ? tail : 1 - tail, density};
}

double upperTail(Wide f, double numerator, double denominator) {
    if (std::isnan(f) || !(numerator > 0.0) || !(denominator > 0.0))
        return std::numeric_limits<double>::quiet_NaN();
    if (f <= 0.0) return 1.0;
    return std::isinf(f) ? 0.0 : static_cast<double>(fPoint(f, numerator / 2.0, denominator / 2.0).upper);
}

} // namespace

double fTail(double f, double numerator, double denominator) {
    return upperTail(f, numerator, denominator);
}

double tTwoSidedTail(double t, double df) {
    return upperTail(Wide(t) * t, 1.0, df);
}

double tTwoSidedQuantile(double df, double alpha) {
    if (alpha <= 0.0 || alpha >= 1.0) return 0.0;
    if (std::isnan(alpha) || !(df > 0.0)) return std::numeric_limits<double>::quiet_NaN();
    // Newton on the logarithm of the tail against ln t^2. It is concave, so that the first step leads from
    // the normal quantile, which is too small, past the solution, and the others back to it. Where the first
    // goes so far that nothing is left of the tail, the bracket is halved; only rounding leaves it.
    const double z = normalUpperQuantile(std::max(alpha / 2.0, std::numeric_limits<double>::denorm_min()));
    Wide square = Wide(z) * z;
    Wide low = 0, high = std::numeric_limits<Wide>::infinity();
    for (int pass = 0; pass < 60 && std::isfinite(square); ++pass) {
        const FPoint at = fPoint(square, 0.5, df / 2.0);
        (at.upper > alpha ? low : high) = square;
        const bool vanishes = !(at.upper > 0.0);
        const Wide step = vanishes ? 1 : std::log(at.upper / alpha) * at.upper / at.density;
        const Wide next = vanishes ? std::sqrt(low) * std::sqrt(high) : square * std::exp(step);
        if (next <= low || (next >= high && std::isfinite(high))) break;
        square = next;
        if (std::fabs(step) <= epsilon) break;
    }
    return static_cast<double>(std::sqrt(square));
}

double rankCorrelationTail(double r, double df) {
    const Wide rest = (1 - Wide(r)) * (1 + Wide(r));
    if (rest <= 0.0 && df > 0.0) return 0.0;
    return upperTail(Wide(r) * r * df / rest, 1.0, df);
}
