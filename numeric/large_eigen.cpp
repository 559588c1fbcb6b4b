#include "numeric/large_eigen.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "numeric/divide_and_conquer.h"
#include "numeric/panel_reduction.h"
#include "numeric/tridiagonal_ql.h"

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

struct LargeEigenWork {
    PanelReduction reduction;
    DivideWork tridiagonal;
    Block<double> diagonal, beside; // n

    [[nodiscard]] ErrorCode allocate(Index n) {
        return reduction.allocate(n) | tridiagonal.allocate(n) | diagonal.allocate(n) | beside.allocate(n);
    }
};

// Copies the lower triangle times the power of 2 that takes its greatest element below 1: no square overflows
// then, and what underflows is nothing beside the rest. False where an element is not finite.
bool copyScaled(Index n, Index stride, const double* source, double* target, int& exponent) {
    double greatest = 0.0;
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j <= i; ++j) {
            const double size = std::fabs(source[i * stride + j]);
            if (!(size <= std::numeric_limits<double>::max())) return false;
            greatest = std::max(greatest, size);
        }
    }
    std::frexp(greatest, &exponent);
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j <= i; ++j) target[i * stride + j] = std::ldexp(source[i * stride + j], -exponent);
    }
    return true;
}

// Elements beside the diagonal that are rounding beside the greatest would keep neighbours that are as small
// from coming to rest.
void dropRounding(const Block<double>& diagonal, double* e) {
    const Index n = diagonal.size();
    double greatest = 0.0;
    for (Index i = 0; i < n; ++i) greatest = std::max({greatest, std::fabs(diagonal[i]), std::fabs(e[i])});
    for (Index i = 0; i < n; ++i) {
        if (std::fabs(e[i]) <= std::numeric_limits<double>::epsilon() * greatest) e[i] = 0.0;
    }
}

// Column n - 1 - k gets row order[k]; by squares of elements, as each goes through memory the other way.
void writeColumns(Index n, Index stride, const DivideWork& work, double* vectors) {
    constexpr Index square = 16;
    for (Index firstColumn = 0; firstColumn < n; firstColumn += square) {
        for (Index i = 0; i < n; i += square) {
            for (Index column = firstColumn; column < std::min(n, firstColumn + square); ++column) {
                const double* row = work.rows.row(work.order[n - 1 - column]);
                for (Index k = i; k < std::min(n, i + square); ++k) vectors[k * stride + column] = row[k];
            }
        }
    }
}

} // namespace

ErrorCode largeEigenvalues(Matrix& a, Block<double>& values) {
    const Index n = a.rows();
    PanelReduction work;
    Block<double> beside;
    const ErrorCode code = work.allocate(n) | beside.allocate(n);
    if (code != success) return code;
    int exponent = 0;
    if (!copyScaled(n, n, a.data(), a.data(), exponent)) {
        std::fill(values.begin(), values.end(), notANumber);
        return success;
    }
    reduceByPanels(n, n, a.data(), values.data(), beside.data(), work);
    dropRounding(values, beside.data());
    // What does not converge is taken as far as it came, as in SymmetricEigen.
    static_cast<void>(rotateToDiagonal(n, values.data(), beside.data(), patientIterations));
    std::sort(values.begin(), values.end(), std::greater<>());
    for (double& value : values) value = std::ldexp(value, exponent);
    return success;
}

ErrorCode largeSymmetricEigen(Index n, Index stride, double* vectors, double* values, const double* source) {
    LargeEigenWork work;
    const ErrorCode code = work.allocate(n);
    if (code != success) return code;
    int exponent = 0;
    if (!copyScaled(n, stride, source, vectors, exponent)) {
        std::fill_n(values, n, notANumber);
        for (Index i = 0; i < n; ++i) std::fill_n(vectors + i * stride, n, notANumber);
        return success;
    }
    double* d = work.diagonal.data();
    double* e = work.beside.data();
    reduceByPanels(n, stride, vectors, d, e, work.reduction);
    dropRounding(work.diagonal, e);
    divideAndConquer(n, d, e, work.tridiagonal);
    reflectRows(stride, vectors, work.reduction, work.tridiagonal.rows);
    writeColumns(n, stride, work.tridiagonal, vectors);
    for (Index k = 0; k < n; ++k) values[n - 1 - k] = std::ldexp(d[work.tridiagonal.order[k]], exponent);
    return success;
}
