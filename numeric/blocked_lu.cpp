#include "numeric/blocked_lu.h"

#include <algorithm>
#include <utility>

#include "numeric/block_product.h"
#include "numeric/row_exchange.h"
#include "numeric/vector_loops.h"

namespace {

constexpr Index panelWidth = 32;

// Factors columns first .. end - 1, of the rows from `first` on, exchanging whole rows.
ErrorCode factorPanel(Index first, Index end, Index n, Index stride, double* a, double* scales,
                      std::int32_t* permutation, double& sign) {
    for (Index j = first; j < end; ++j) {
        if (exchangeRows(j, n, stride, a, scales, permutation, sign) == 0.0) return decompositionFailed;
        const double* row = a + j * stride;
        for (Index i = j + 1; i < n; ++i) {
            double* other = a + i * stride;
            other[j] /= row[j];
            addMultiple(end - j - 1, other + j + 1, -other[j], row + j + 1);
        }
    }
    return success;
}

// Solves L x = b for rows first .. end - 1 of several b, each of `columns` elements from b on, L having ones
// on its diagonal.
void solveLower(Index first, Index end, Index stride, const double* factors, Index columns, double* b) {
    for (Index i = first; i < end; ++i) {
        const double* row = factors + i * stride;
        for (Index k = first; k < i; ++k) addMultiple(columns, b + i * stride, -row[k], b + k * stride);
    }
}

// The same for U x = b.
void solveUpper(Index first, Index end, Index stride, const double* factors, Index columns, double* b) {
    for (Index i = end; i-- > first;) {
        const double* row = factors + i * stride;
        double* solved = b + i * stride;
        for (Index k = i + 1; k < end; ++k) addMultiple(columns, solved, -row[k], b + k * stride);
        for (Index j = 0; j < columns; ++j) solved[j] /= row[i];
    }
}

} // namespace

ErrorCode decomposeByBlocks(Index n, Index stride, double* a, double* scales, std::int32_t* permutation,
                            double& sign) {
    double parity = 1.0;
    for (Index first = 0; first < n; first += panelWidth) {
        const Index end = std::min(n, first + panelWidth);
        const ErrorCode code = factorPanel(first, end, n, stride, a, scales, permutation, parity);
        if (code != success) return code;
        solveLower(first, end, stride, a, n - end, a + end);
        addProduct(n - end, n - end, end - first, -1.0, {a + end * stride + first, stride, 1},
                   {a + first * stride + end, stride, 1}, a + end * stride + end, stride);
    }
    sign = parity;
    return success;
}

void invertByBlocks(Index n, Index stride, const double* factors, const std::int32_t* permutation,
                    double* inverse) {
    for (Index i = 0; i < n; ++i) {
        std::fill_n(inverse + i * stride, n, 0.0);
        inverse[i * stride + i] = 1.0;
    }
    for (Index first = 0; first < n; first += panelWidth) { // the inverse of L, a lower triangle too
        const Index end = std::min(n, first + panelWidth);
        addProduct(end - first, first, first, -1.0, {factors + first * stride, stride, 1},
                   {inverse, stride, 1}, inverse + first * stride, stride);
        solveLower(first, end, stride, factors, end, inverse);
    }
    for (Index end = n; end > 0;) {
        const Index first = (end - 1) / panelWidth * panelWidth;
        addProduct(end - first, n, n - end, -1.0, {factors + first * stride + end, stride, 1},
                   {inverse + end * stride, stride, 1}, inverse + first * stride, stride);
        solveUpper(first, end, stride, factors, n, inverse);
        end = first;
    }
    for (Index i = 0; i < n; ++i) {
        double* row = inverse + i * stride;
        for (Index j = n; j-- > 0;) std::swap(row[j], row[permutation[j]]);
    }
}
