#include "analysis/run/tail_deviation.h"

#include <cmath>

#include "numeric/numerics.h"

bool deviates(double printed, double textbook) {
    constexpr double shownDeviation = 1e-6;
    if (printed == textbook || (std::isnan(printed) && std::isnan(textbook))) return false;
    return !(std::fabs(printed - textbook) <= shownDeviation);
}

bool chiSquareTailsDeviate(Index n, const double* chiSquares, const double* df, const double* printed) {
    for (Index i = 0; i < n; ++i) {
        double tail = 0.0;
        textbookNumerics.chiSquareTails(1, &chiSquares[i], &df[i], &tail);
        if (deviates(printed[i], tail)) return true;
    }
    return false;
}

bool fTailsDeviate(Index n, const double* f, const double* numerator, const double* denominator,
                   const double* printed) {
    for (Index i = 0; i < n; ++i) {
        double tail = 0.0;
        textbookNumerics.fTails(1, &f[i], &numerator[i], &denominator[i], &tail);
        if (deviates(printed[i], tail)) return true;
    }
    return false;
}
