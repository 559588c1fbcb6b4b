#include "numeric/lu.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "numeric/block.h"

namespace {

// Writes 1 / largest magnitude of each row to scales; false for a row without any.
bool scaleRows(std::size_t order, std::size_t width, const double* a, double* scales) {
    for (std::size_t i = 0; i < order; ++i) {
        double largest = 0.0;
        for (std::size_t j = 0; j < order; ++j) largest = std::max(largest, std::fabs(a[i * width + j]));
        if (largest == 0.0) return false;
        scales[i] = 1.0 / largest;
    }
    return true;
}

// Element (i, j) less the product of the first count factors of row i and column j.
double reduced(const double* a, std::size_t width, std::size_t i, std::size_t j, std::size_t count) {
    const double* row = a + i * width;
    double sum = row[j];
    for (std::size_t k = 0; k < count; ++k) sum -= row[k] * a[k * width + j];
    return sum;
}

// LuDecompose, then the product of sign and pivots. Only outOfMemory is passed on, a matrix that could not be
// factored keeps the determinant 0: reports depend on this.
ErrorCode decomposeAndMultiply(int n, int stride, double* a, std::int32_t* permutation, double& determinant) {
    determinant = 0.0;
    const ErrorCode code = LuDecompose(n, stride, a, permutation, determinant);
    if (code == outOfMemory) return code;
    if (code == decompositionFailed) return success;
    const auto width = static_cast<std::size_t>(stride);
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) determinant *= a[i * width + i];
    return success;
}

} // namespace

ErrorCode LuDecompose(int n, int stride, double* a, std::int32_t* permutation, double& sign) {
    const auto order = static_cast<std::size_t>(n);
    const auto width = static_cast<std::size_t>(stride);
    Block<double> scales;
    if (scales.allocate(order) != success) return outOfMemory;
    if (!scaleRows(order, width, a, scales.data())) return decompositionFailed;

    double parity = 1.0;
    for (std::size_t j = 0; j < order; ++j) {
        for (std::size_t i = 0; i < j; ++i) a[i * width + j] = reduced(a, width, i, j, i);
        std::size_t pivotRow = j;
        double best = 0.0;
        for (std::size_t i = j; i < order; ++i) {
            a[i * width + j] = reduced(a, width, i, j, j);
            const double weight = scales[i] * std::fabs(a[i * width + j]);
            if (weight > best) {
                best = weight;
                pivotRow = i;
            }
        }
        if (pivotRow != j) {
            std::swap_ranges(a + j * width, a + j * width + order, a + pivotRow * width);
            scales[pivotRow] = scales[j];
            parity = -parity;
        }
        permutation[j] = static_cast<std::int32_t>(pivotRow);
        const double pivot = a[j * width + j];
        if (pivot == 0.0) return decompositionFailed;
        for (std::size_t i = j + 1; i < order; ++i) a[i * width + j] /= pivot;
    }
    sign = parity;
    return success;
}

ErrorCode LuSolve(int n, int stride, const double* factors, const std::int32_t* permutation, double* b) {
    const auto order = static_cast<std::size_t>(n);
    const auto width = static_cast<std::size_t>(stride);
    std::size_t firstNonzero = order;
    for (std::size_t i = 0; i < order; ++i) {
        const double* row = factors + i * width;
        const auto exchanged = static_cast<std::size_t>(permutation[i]);
        double sum = b[exchanged];
        b[exchanged] = b[i];
        for (std::size_t k = firstNonzero; k < i; ++k) sum -= row[k] * b[k];
        if (firstNonzero == order && sum != 0.0) firstNonzero = i;
        b[i] = sum;
    }
    for (std::size_t i = order; i-- > 0;) {
        const double* row = factors + i * width;
        double sum = b[i];
        for (std::size_t k = i + 1; k < order; ++k) sum -= row[k] * b[k];
        b[i] = sum / row[i];
    }
    return success;
}

ErrorCode MatrixInverse(int n, int stride, double* a, double* inverse, double& determinant) {
    const auto order = static_cast<std::size_t>(n);
    const auto width = static_cast<std::size_t>(stride);
    Block<std::int32_t> permutation; // the zeros that a failed factoring leaves are valid rows
    Block<double> column;
    if ((permutation.allocate(order) | column.allocate(order)) != success) return outOfMemory;
    const ErrorCode code = decomposeAndMultiply(n, stride, a, permutation.data(), determinant);
    if (code != success) return code;
    for (std::size_t j = 0; j < order; ++j) {
        std::fill(column.begin(), column.end(), 0.0);
        column[j] = 1.0;
        LuSolve(n, stride, a, permutation.data(), column.data());
        for (std::size_t i = 0; i < order; ++i) inverse[i * width + j] = column[i];
    }
    return success;
}

ErrorCode MatrixDeterminant(int n, int stride, double* a, double& determinant) {
    Block<std::int32_t> permutation;
    if (permutation.allocate(static_cast<std::size_t>(n)) != success) return outOfMemory;
    return decomposeAndMultiply(n, stride, a, permutation.data(), determinant);
}

bool isSingular(int n, int stride, const double* a, int inverseStride, const double* inverse) {
    const std::size_t step = static_cast<std::size_t>(stride) + 1;
    const std::size_t inverseStep = static_cast<std::size_t>(inverseStride) + 1;
    for (std::size_t j = 0; j < static_cast<std::size_t>(n); ++j) {
        const double inflation = a[j * step] * inverse[j * inverseStep];
        if (!(inflation > 0.0 && inflation < 1e10)) return true;
    }
    return false;
}

ErrorCode invertRegular(int n, const double* a, double* scratch, double* inverse) {
    const auto order = static_cast<std::size_t>(n);
    std::copy_n(a, order * order, scratch);
    double determinant = 0.0;
    const ErrorCode code = MatrixInverse(n, n, scratch, inverse, determinant);
    if (code != success) return code;
    return isSingular(n, n, a, n, inverse) ? singularMatrix : success;
}
