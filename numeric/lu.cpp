#include "numeric/lu.h"

#include <algorithm>
#include <cmath>

#include "numeric/block_product.h"
#include "numeric/blocked_lu.h"
#include "numeric/row_exchange.h"

namespace {

// Writes 1 / largest magnitude of each row to scales; false for a row without any.
bool scaleRows(Index order, Index width, const double* a, double* scales) {
    for (Index i = 0; i < order; ++i) {
        double largest = 0.0;
        for (Index j = 0; j < order; ++j) largest = std::max(largest, std::fabs(a[i * width + j]));
        if (largest == 0.0) return false;
        scales[i] = 1.0 / largest;
    }
    return true;
}

// Element (i, j) less the product of the first count factors of row i and column j.
double reduced(const double* a, Index width, Index i, Index j, Index count) {
    const double* row = a + i * width;
    double sum = row[j];
    for (Index k = 0; k < count; ++k) sum -= row[k] * a[k * width + j];
    return sum;
}

// LuDecompose, then the product of sign and pivots. Only outOfMemory is passed on, a matrix that could not be
// factored keeps the determinant 0: kept so that reports stay comparable.
ErrorCode decomposeAndMultiply(Index n, Index stride, double* a, std::int32_t* permutation,
                               double& determinant) {
    determinant = 0.0;
    const ErrorCode code = LuDecompose(n, stride, a, permutation, determinant);
    if (code == outOfMemory) return code;
    if (code == decompositionFailed) return success;
    for (Index i = 0; i < n; ++i) determinant *= a[i * stride + i];
    return success;
}

} // namespace

ErrorCode LuDecompose(Index n, Index stride, double* a, std::int32_t* permutation, double& sign) {
    Block<double> scales;
    if (scales.allocate(n) != success) return outOfMemory;
    if (!scaleRows(n, stride, a, scales.data())) return decompositionFailed;
    if (n >= blockedOrder) return decomposeByBlocks(n, stride, a, scales.data(), permutation, sign);

    double parity = 1.0;
    for (Index j = 0; j < n; ++j) {
        for (Index i = 0; i < j; ++i) a[i * stride + j] = reduced(a, stride, i, j, i);
        for (Index i = j; i < n; ++i) a[i * stride + j] = reduced(a, stride, i, j, j);
        const double pivot = exchangeRows(j, n, stride, a, scales.data(), permutation, parity);
        if (pivot == 0.0) return decompositionFailed;
        for (Index i = j + 1; i < n; ++i) a[i * stride + j] /= pivot;
    }
    sign = parity;
    return success;
}

ErrorCode LuSolve(Index n, Index stride, const double* factors, const std::int32_t* permutation, double* b) {
    Index firstNonzero = n;
    for (Index i = 0; i < n; ++i) {
        const double* row = factors + i * stride;
        const Index exchanged = permutation[i];
        double sum = b[exchanged];
        b[exchanged] = b[i];
        for (Index k = firstNonzero; k < i; ++k) sum -= row[k] * b[k];
        if (firstNonzero == n && sum != 0.0) firstNonzero = i;
        b[i] = sum;
    }
    for (Index i = n; i-- > 0;) {
        const double* row = factors + i * stride;
        double sum = b[i];
        for (Index k = i + 1; k < n; ++k) sum -= row[k] * b[k];
        b[i] = sum / row[i];
    }
    return success;
}

ErrorCode MatrixInverse(Index n, Index stride, double* a, double* inverse, double& determinant) {
    Block<std::int32_t> permutation; // the zeros that a failed factoring leaves are valid rows
    Block<double> column;
    if ((permutation.allocate(n) | column.allocate(n)) != success) return outOfMemory;
    const ErrorCode code = decomposeAndMultiply(n, stride, a, permutation.data(), determinant);
    if (code != success) return code;
    if (n >= blockedOrder) {
        invertByBlocks(n, stride, a, permutation.data(), inverse);
        return success;
    }
    for (Index j = 0; j < n; ++j) {
        std::fill(column.begin(), column.end(), 0.0);
        column[j] = 1.0;
        LuSolve(n, stride, a, permutation.data(), column.data());
        for (Index i = 0; i < n; ++i) inverse[i * stride + j] = column[i];
    }
    return success;
}

ErrorCode invertColumn(Index n, Index stride, double* a, Index j, double* column, double& determinant) {
    Block<std::int32_t> permutation;
    if (permutation.allocate(n) != success) return outOfMemory;
    const ErrorCode code = decomposeAndMultiply(n, stride, a, permutation.data(), determinant);
    if (code != success) return code;
    std::fill_n(column, n, 0.0);
    column[j] = 1.0;
    return LuSolve(n, stride, a, permutation.data(), column);
}

ErrorCode MatrixDeterminant(Index n, Index stride, double* a, double& determinant) {
    Block<std::int32_t> permutation;
    if (permutation.allocate(n) != success) return outOfMemory;
    return decomposeAndMultiply(n, stride, a, permutation.data(), determinant);
}

bool isSingular(Index n, Index stride, const double* a, Index inverseStride, const double* inverse) {
    const Index step = stride + 1;
    const Index inverseStep = inverseStride + 1;
    for (Index j = 0; j < n; ++j) {
        const double inflation = a[j * step] * inverse[j * inverseStep];
        if (!(inflation > 0.0 && inflation < 1e10)) return true;
    }
    return false;
}

ErrorCode MatrixInverse(Matrix& a, Matrix& inverse, double& determinant) {
    return MatrixInverse(a.rows(), a.columns(), a.data(), inverse.data(), determinant);
}

ErrorCode MatrixDeterminant(Matrix& a, double& determinant) {
    return MatrixDeterminant(a.rows(), a.columns(), a.data(), determinant);
}

bool isSingular(const Matrix& a, const Matrix& inverse) {
    return isSingular(a.rows(), a.columns(), a.data(), inverse.columns(), inverse.data());
}

ErrorCode invertRegular(const Matrix& a, Matrix& scratch, Matrix& inverse) {
    std::copy(a.begin(), a.end(), scratch.begin());
    double determinant = 0.0;
    const ErrorCode code = MatrixInverse(scratch, inverse, determinant);
    if (code != success) return code;
    return isSingular(a, inverse) ? singularMatrix : success;
}
