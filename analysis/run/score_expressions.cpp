#include "analysis/run/score_expressions.h"

#include <cmath>
#include <cstdio>

void ExpressionWriter::divideBy(double divisor) {
    sql_ << " / " << (divisor == 0.0 ? std::nan("") : divisor);
}

void ExpressionWriter::addScores(const char* prefix, const MomentMatrices& moments, Index first,
                                 const Matrix& weights) {
    char name[32];
    for (Index k = 0; k < weights.columns(); ++k) {
        std::snprintf(name, sizeof name, "%s%td", prefix, k + 1);
        add(name, [&] {
            sum(0.0, weights.rows(), [&](Index j) {
                const Index column = first + j;
                writeTerm(weights(j, k) / moments.sds[column], column, moments.means[column]);
            });
        });
    }
}
