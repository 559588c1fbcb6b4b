#include "numeric/beta.h"

#include <cmath>

#include "numeric/gamma.h"

double continuefunc(double, double, double, std::uint32_t&) {
    return 1.0;
}

double IncompleteBeta(double a, double b, double x, std::uint32_t& errorFlag) {
    if (x < 0.0 || x > 1.0) {
        errorFlag = 1;
        return 0.0;
    }
    double front = 0.0;
    if (x > 0.0 && x < 1.0)
        front = std::exp(LogGammaLanczos(a + b) - LogGammaLanczos(a) - LogGammaLanczos(b) + a * std::log(x) +
                         b * std::log(1.0 - x));
    if (x < (a + 1.0) / (a + b + 2.0)) return continuefunc(a, b, x, errorFlag) * front / a;
    return 1.0 - continuefunc(b, a, 1.0 - x, errorFlag) * front / b;
}
