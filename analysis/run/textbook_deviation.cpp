#include "analysis/run/textbook_deviation.h"

#include <algorithm>
#include <cmath>

#include "numeric/numerics.h"

bool deviates(double value, double textbook) {
    if (value == textbook || (std::isnan(value) && std::isnan(textbook))) return false;
    if (!std::isfinite(value) || !std::isfinite(textbook)) return true;
    return std::fabs(value - textbook) > shownDeviation * std::max(1.0, std::fabs(textbook));
}

bool anyDeviates(const Block<double>& values, const Block<double>& textbook, Index count) {
    for (Index i = 0; i < count; ++i)
        if (deviates(values[i], textbook[i])) return true;
    return false;
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
