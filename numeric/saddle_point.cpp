#include "numeric/saddle_point.h"

#include <numbers>

double stirlingError(double a) {
    const double r = 1.0 / (a * a);
    return (1.0 / 12.0 - r * (1.0 / 360.0 - r * (1.0 / 1260.0 - r * (1.0 / 1680.0 - r / 1188.0)))) / a;
}

double stirlingFactor(double a) {
    if (a < stirlingFrom)
        return std::tgamma(a + 1.0) * std::exp(a) / (std::sqrt(2.0 * std::numbers::pi * a) * std::pow(a, a));
    return std::exp(stirlingError(a));
}

double tailIntegral(double slope, double a, double d, double b, double r) {
    // Positive points, and their weights.
    constexpr double points[][2] = {
        {0.997263861849481564, 0.0070186100094700966}, {0.985611511545268335, 0.0162743947309056706},
        {0.964762255587506431, 0.0253920653092620595}, {0.934906075937739689, 0.0342738629130214331},
        {0.896321155766052124, 0.0428358980222266807}, {0.84936761373256997, 0.0509980592623761762},
        {0.794483795967942407, 0.0586840934785355471}, {0.73218211874028968, 0.0658222227763618468},
        {0.663044266930215201, 0.0723457941088485062}, {0.587715757240762329, 0.0781938957870703065},
        {0.50689990893222939, 0.0833119242269467552},  {0.421351276130635345, 0.0876520930044038111},
        {0.33186860228212765, 0.0911738786957638847},  {0.239287362252137075, 0.0938443990808045656},
        {0.144471961582796493, 0.0956387200792748594}, {0.0483076656877383162, 0.0965400885147278006}};
    // Where a parabola would have fallen by exp(-60).
    constexpr double drop = 60.0;
    const double curvature = a + b * r * r;
    const double half = drop / (slope + std::sqrt(slope * slope + 2.0 * curvature * drop));
    const auto density = [&](double t) {
        const double u = d * t, v = -r * u;
        const double exponent = slope * t + a * deviance(u, 1.0 + u) + b * deviance(v, 1.0 + v);
        return std::exp(-exponent) / ((1.0 + u) * (1.0 + v));
    };
    double sum = 0.0;
    for (const auto& [point, weight] : points)
        sum += weight * (density(half * (1.0 - point)) + density(half * (1.0 + point)));
    return sum * half;
}
