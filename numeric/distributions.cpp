#include "numeric/distributions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "numeric/gamma.h"

namespace {

using std::numbers::pi;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

double fUpper(double f, double numerator, double denominator) {
    if (f <= 0.0) return 1.0;
    double a = numerator / 2.0;
    double b = denominator / 2.0;
    const double sum = a + b;
    const double scaled = f * a;
    double x = std::isinf(scaled) ? 1.0 : scaled / (scaled + b); // so far out, x has its limit
    const bool complement = x > 0.5;
    if (complement) {
        std::swap(a, b);
        x = 1.0 - x;
    }
    double logSum = 0.0;
    double logFirst = 0.0;
    double logSecond = 0.0;
    LogGamma(sum, logSum);
    LogGamma(a + 1.0, logFirst);
    LogGamma(b, logSecond);
    const double lead = std::exp(logSum + b * std::log(1.0 - x) + a * std::log(x) - logFirst - logSecond);

    // The limit of 999 terms and the size of the last one are kept so that reports stay comparable.
    double series = 0.0;
    double term = 1.0;
    for (int k = 1; k <= 999; ++k) {
        term = term * x * (k + sum - 1.0) / (k + a);
        series += term;
        if (term < 1e-12) break;
    }
    // A series that overflows stands for the whole distribution, whatever is left of the lead.
    const double lower = std::isinf(series) ? 1.0 : (1.0 + series) * lead;
    const double result = complement ? lower : 1.0 - lower;
    return result < 1e-12 ? 0.0 : result;
}

// The upper tail for whole degrees of freedom up to 100 and x up to 100, as a finite series.
double chiSquareFinite(double x, double df) {
    const int whole = static_cast<int>(df);
    const bool odd = whole % 2 != 0;
    // The terms end before the divisor 3 or 2, so that 5 degrees of freedom give the value of 3, and 4 that
    // of 2: kept so that reports stay comparable.
    const int lastDivisor = odd ? 3 : 2;
    double series = 0.0;
    for (int j = whole - 2; j > lastDivisor; j -= 2) series = (series + 1.0) * x / j;
    if (!odd) return std::exp(-x / 2.0) * (series + 1.0);

    const double s = std::sqrt(x); // Abramowitz and Stegun 1964, 26.2.19, of both tails
    const double polynomial =
        1.0 +
        s * (0.049867347 +
             s * (0.0211410061 + s * (0.0032776263 + s * (3.80036e-5 + s * (4.88906e-5 + s * 5.383e-6)))));
    const double normalTails = std::pow(polynomial, -16.0);
    if (df == 1.0) return normalTails;
    return normalTails + std::exp(-x / 2.0) * std::sqrt(2.0 / pi) * (series + 1.0) * s;
}

double chiSquareSeries(double x, double df, double tolerance) {
    if (std::isnan(x) || std::isnan(df)) return notANumber;
    if (x <= 0.0 || df <= 0.0) return 1.0;
    if (std::isinf(x)) return 0.0;
    if (df > 1e9) {
        // Near x = df the series has some 5 sqrt(df) terms and beyond 2^53 never ends, and rounding of the
        // lead spoils it by df * 1e-15. The cube root of x / df is normal to 1e-9 (Wilson and Hilferty 1931).
        const double variance = 2.0 / (9.0 * df);
        return 0.5 * std::erfc((std::cbrt(x / df) - (1.0 - variance)) / std::sqrt(2.0 * variance));
    }
    double m = x / df <= 1.0 ? df + 2.0 : df;
    const double h = m / 2.0;
    double logGamma = 0.0;
    LogGamma(h, logGamma);
    const double lead = std::exp(std::log(x / 2.0) * (h - 1.0) - x / 2.0 - logGamma);
    double ratio = x / m;
    double sum = 1.0;
    // A term that no longer changes the sum ends both series, whatever the tolerance.
    if (ratio > 1.0) {
        m = df - 2.0;
        ratio = m / x;
        while (ratio > tolerance && sum + ratio > sum) {
            m -= 2.0;
            sum += ratio;
            ratio = ratio * m / x;
        }
        return lead * sum;
    }
    while (ratio > tolerance && sum + ratio > sum) {
        m += 2.0;
        sum += ratio;
        ratio = ratio * x / m;
    }
    return 1.0 - lead * sum;
}

double chiSquareUpper(double x, double df) {
    if (x <= 0.0 || df < 1.0) return 1.0;
    if (df <= 100.0 && x <= 100.0) return chiSquareFinite(x, df);
    return std::max(chiSquareSeries(x, df, 1e-10), 0.0);
}

} // namespace

double ComplementaryErrorFunction(double x) {
    const double size = std::fabs(x);
    const double t = 1.0 / (1.0 + 0.5 * size);
    const double exponent =
        -size * size - 1.26551223 +
        t * (1.00002368 +
             t * (0.37409196 +
                  t * (0.09678418 + t * (-0.18628806 +
                                         t * (0.27886807 + t * (-1.13520398 +
                                                                t * (1.48851587 + t * (-0.82215223 +
                                                                                       t * 0.17087277))))))));
    const double tail = t * std::exp(exponent);
    return x >= 0.0 ? tail : 2.0 - tail;
}

ErrorCode FUpperProbability(Index n, const double* f, const double* numerator, const double* denominator,
                            double* out) {
    for (Index i = 0; i < n; ++i) out[i] = fUpper(f[i], numerator[i], denominator[i]);
    return success;
}

double NormalUpperQuantile(double p) {
    // From the highest power down. -0.000234768842092152 stands twice: kept so that reports stay
    // comparable.
    constexpr double coefficients[] = {
        1.61614603871299e-16,  -1.78837229464158e-14, 8.88943322341436e-13, -2.61195052190738e-11,
        5.00533655324426e-10,  -6.46627744010232e-09, 5.53751002988654e-08, -2.8362917434063e-07,
        5.39877747512783e-07,  1.22127251950965e-06,  1.54574365345128e-05, -0.000234768842092152,
        -0.000234768842092152, -0.000830686207721635, 0.0370684581838722,   1.57079636931376};
    const double w = 0.0 - std::log(4.0 * p * (1.0 - p)); // not a plain minus, which makes p = 0.5 give -0
    double polynomial = 0.0;
    for (const double coefficient : coefficients) polynomial = polynomial * w + coefficient;
    return std::sqrt(w * polynomial);
}

double TTwoSidedProbability(double t, double df) {
    if (std::isnan(t) || std::isnan(df)) return notANumber;
    if (t == 0.0) return 1.0;
    const double u = std::fabs(t) / std::sqrt(df);
    if (df > 0.0 && std::isinf(u * u)) return 0.0;
    if (df > 1e6) {
        // The sum below has df / 2 terms. From here on the normal tail with the first term of Fisher's
        // expansion (1925) agrees with it better than it is rounded. Beyond 40 nothing is left.
        const double z = std::min(std::fabs(t), 40.0);
        const double z2 = z * z;
        return std::erfc(z / std::numbers::sqrt2) +
               (z2 + 1.0) * z * std::exp(-z2 / 2.0) / std::sqrt(2.0 * pi) / (2.0 * df);
    }
    const double w = 1.0 / (u * u + 1.0);
    const bool odd = df != 2.0 * std::trunc(df / 2.0);
    double term = odd ? 2.0 / pi * u * w : std::sqrt(w) * u;
    double result = odd ? 1.0 - 2.0 / pi * std::atan(u) : 1.0;
    if (!odd || df >= 3.0) result -= term;
    for (int k = odd ? 3 : 2; k <= df - 2.0; k += 2) {
        term = term * (k - 1) * w / k;
        result -= term;
    }
    // A larger negative rounding error shows: kept so that reports stay comparable.
    return result < 0.0 && result > -1e-11 ? 0.0 : result;
}

double TInverse(double df, double alpha) {
    if (alpha <= 0.0 || alpha >= 1.0) return 0.0;
    double low = 0.0;
    double high = 10.0;
    while (high < 1e31) {
        const double p = TTwoSidedProbability(high, df);
        if (p == alpha) return high;
        if (p < alpha) {
            double middle = 0.0;
            do {
                middle = (low + high) / 2.0;
                (TTwoSidedProbability(middle, df) > alpha ? low : high) = middle;
            } while (std::fabs(high - low) / middle >= 1e-10);
            return middle;
        }
        low = high;
        high *= 10.0;
    }
    const double z = NormalUpperQuantile(alpha / 2.0);
    const double z2 = z * z;
    return z + (z2 + 1.0) * z / (4.0 * df) + ((5.0 * z2 + 16.0) * z2 + 3.0) * z / (96.0 * df * df) +
           (((3.0 * z2 + 19.0) * z2 + 17.0) * z2 - 15.0) * z / (384.0 * df * df * df);
}

ErrorCode ChiSquareUpperProbability(Index n, const double* chiSquares, const double* df, double* out) {
    for (Index i = 0; i < n; ++i) out[i] = chiSquareUpper(chiSquares[i], df[i]);
    return success;
}

void ChiSquareSeries(double& out, double x, double df, double tolerance) {
    out = chiSquareSeries(x, df, tolerance);
    if (out < 0.0) out = 0.0;
}
