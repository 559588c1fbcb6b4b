#include "report/charts/ellipse.h"

#include <cmath>

namespace {

constexpr double chiSquare95 = 5.991464547107979; // of two degrees of freedom: -2 ln 0.05
constexpr double leastAxis = 1e-9;                // as a share of the longer one

} // namespace

void ChartEllipse::point(double angle, double& x, double& y) const {
    const double c = std::cos(angle), s = std::sin(angle);
    x = meanX + c * longX + s * shortX;
    y = meanY + c * longY + s * shortY;
}

bool findEllipse(const double* x, const double* y, const char* isIn, Index n, ChartEllipse& ellipse) {
    double count = 0.0, meanX = 0.0, meanY = 0.0, xx = 0.0, xy = 0.0, yy = 0.0;
    for (Index i = 0; i < n; ++i) {
        if (isIn[i] == 0 || !std::isfinite(x[i]) || !std::isfinite(y[i])) continue;
        count += 1.0;
        const double dx = x[i] - meanX, dy = y[i] - meanY;
        meanX += dx / count;
        meanY += dy / count;
        xx += dx * (x[i] - meanX);
        xy += dx * (y[i] - meanY);
        yy += dy * (y[i] - meanY);
    }
    if (count < 3.0) return false;
    // Eigenvalues of the covariance matrix, and the angle of the larger one.
    const double scale = chiSquare95 / (count - 1.0);
    const double middle = (xx + yy) / 2.0, radius = std::hypot((xx - yy) / 2.0, xy);
    const double longer = std::sqrt(scale * (middle + radius));
    const double shorter = std::sqrt(scale * std::fmax(middle - radius, 0.0));
    if (!(shorter > leastAxis * longer) || !std::isfinite(longer)) return false;
    const double angle = 0.5 * std::atan2(2.0 * xy, xx - yy);
    ellipse = {.meanX = meanX,
               .meanY = meanY,
               .longX = longer * std::cos(angle),
               .longY = longer * std::sin(angle),
               .shortX = -shorter * std::sin(angle),
               .shortY = shorter * std::cos(angle)};
    return true;
}
