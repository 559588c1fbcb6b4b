#include "numeric/stand_in_rows.h"

#include <cmath>
#include <limits>

void findStandInRows(const Matrix& covariance, double n, Matrix& rows) {
    const Index p = covariance.rows();
    const double least = static_cast<double>(p) * std::numeric_limits<double>::epsilon();
    rows.fill(0.0);
    for (Index i = 0; i < p; ++i) {
        // What is left of the row of covariances behind the factor's rows so far, over its root.
        double* const row = rows.row(2 * i);
        for (Index j = i; j < p; ++j) row[j] = n / 2.0 * covariance(i, j);
        for (Index k = 0; k < i; ++k) {
            const double* const before = rows.row(2 * k);
            for (Index j = i; j < p; ++j) row[j] -= before[i] * before[j];
        }
        const bool depends = !(row[i] > least * n / 2.0 * covariance(i, i));
        const double root = std::sqrt(row[i]);
        for (Index j = i; j < p; ++j) {
            row[j] = depends ? 0.0 : row[j] / root;
            rows(2 * i + 1, j) = -row[j];
        }
    }
}
