#include "analysis/run/textbook_deviation.h"

#include <algorithm>
#include <cmath>

bool deviates(double value, double textbook) {
    return std::fabs(value - textbook) > shownDeviation * std::max(1.0, std::fabs(textbook));
}

bool anyDeviates(const Block<double>& values, const Block<double>& textbook, Index count) {
    for (Index i = 0; i < count; ++i)
        if (deviates(values[i], textbook[i])) return true;
    return false;
}
