#include "numeric/householder.h"

#include <cmath>

#include "numeric/vector_loops.h"

double makeReflection(Index count, double* u, double& offDiagonal) {
    offDiagonal = u[count - 1];
    if (count == 1) return 0.0;
    double scale = 0.0;
    for (Index k = 0; k < count; ++k) scale += std::fabs(u[k]);
    if (scale == 0.0) return 0.0;
    for (Index k = 0; k < count; ++k) u[k] /= scale;
    const double h = dot(count, u, u);
    const double last = u[count - 1];
    const double g = last >= 0.0 ? -std::sqrt(h) : std::sqrt(h);
    offDiagonal = scale * g;
    u[count - 1] = last - g;
    return h - last * g;
}
