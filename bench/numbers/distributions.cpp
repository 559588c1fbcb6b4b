// Prints the distribution functions of a record of numerics over grids, one "function a b c value" a line
// with 17 digits, for distributions.R to compare with R. Argument: classic or textbook.
#include <cmath>
#include <cstdio>
#include <cstring>

#include "numeric/beta.h"
#include "numeric/gamma.h"
#include "numeric/incomplete_gamma.h"
#include "numeric/numerics.h"

static void say(const char* name, double a, double b, double c, double value) {
    std::printf("%s %.17g %.17g %.17g %.17g\n", name, a, b, c, value);
}

int main(int count, char** arguments) {
    const bool textbook = count > 1 && std::strcmp(arguments[1], "textbook") == 0;
    const Numerics& numerics = textbook ? textbookNumerics : classicNumerics;
    for (double z = 0.0; z <= 10.0; z += 0.05) say("normal", z, 0, 0, numerics.normalTwoSidedTail(z));
    const double ps[] = {0.5,   0.4,    0.3,   0.2,  0.1,  0.05, 0.025, 0.01,
                         0.005, 0.0025, 0.001, 5e-4, 1e-4, 1e-5, 1e-6,  1e-8};
    for (double p : ps) say("normalq", p, 0, 0, numerics.normalUpperQuantile(p));
    const double dfs[] = {1,  2,  3,  4,  5,  6,   7,   8,   9,   10,  11,   12,   15,   20,    25,
                          30, 40, 50, 75, 99, 100, 101, 120, 200, 500, 1000, 1999, 5000, 20000, 100000};
    const double tails[] = {0.999, 0.99,  0.95, 0.9,   0.75,  0.5,  0.25, 0.1,  0.06, 0.05,
                            0.04,  0.025, 0.01, 0.005, 0.001, 1e-4, 1e-6, 1e-8, 1e-10};
    // The arguments are multiples of the degrees of freedom or of 1, so that no quantile function is needed
    // here.
    for (double df : dfs) {
        for (double x = 0.05; x < 6.0; x *= 1.07) {
            double chi = x * df, p = 0.0;
            numerics.chiSquareTails(1, &chi, &df, &p);
            say("chi2", chi, df, 0, p);
            say("gamma", chi, df, 0, ChiSquareUpperTail(chi, df));
        }
        for (double t = 0.0; t <= 12.0; t += 0.15) say("t", t, df, 0, numerics.tTwoSidedTail(t, df));
        for (double p : tails) say("tq", p, df, 0, numerics.tTwoSidedQuantile(df, p));
        for (double df1 : {1.0, 2.0, 3.0, 4.0, 5.0, 7.0, 8.0, 10.0, 15.0, 20.0, 30.0, 60.0, 120.0})
            for (double f = 0.02; f < 60.0; f *= 1.15) {
                double p = 0.0;
                numerics.fTails(1, &f, &df1, &df, &p);
                say("f", f, df1, df, p);
            }
    }
    for (double n : {4.0, 5.0, 8.0, 10.0, 15.0, 20.0, 30.0, 50.0, 100.0, 300.0, 1000.0})
        for (double r = 0.0; r < 0.999; r += 0.02) {
            // The probability of a rank correlation r without ties.
            double p = 0.0;
            numerics.rankCorrelationTail(r, n - 2.0, 1.0, p);
            say("spearman", r, n, 0, p);
            if (textbook) continue;
            std::uint32_t flag = 0;
            say("beta", 0.5 * (n - 2.0), 0.5, 1.0 - r * r,
                IncompleteBeta(0.5 * (n - 2.0), 0.5, 1.0 - r * r, flag));
        }
    if (textbook) return 0;
    for (double x = 0.5; x <= 200.0; x += 0.5) {
        double v = 0.0;
        LogGamma(x, v);
        say("lgamma", x, 0, 0, v);
        say("lanczos", x, 0, 0, LogGammaLanczos(x));
    }
}
