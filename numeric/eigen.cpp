#include "numeric/eigen.h"

#include <algorithm>
#include <utility>

#include "numeric/block_product.h"
#include "numeric/householder.h"
#include "numeric/large_eigen.h"
#include "numeric/tridiagonal_ql.h"
#include "numeric/vector_loops.h"

// Inside, vectors are held as rows, so that the inner loops run along contiguous memory; the matrix is
// transposed where it crosses the interface, which costs next to nothing.

namespace {

void transpose(Index order, Index width, double* a) {
    for (Index i = 1; i < order; ++i)
        for (Index j = 0; j < i; ++j) std::swap(a[i * width + j], a[j * width + i]);
}

// Applies the reflection 1 - u u' / h from both sides to the leading block of order count, lower triangle
// only. work (count) is scratch.
void reflectBlock(Index count, Index width, double* a, const double* u, double h, double* work) {
    // work = A u, each row serving as the column that mirrors it too
    for (Index j = 0; j < count; ++j) {
        const double* row = a + j * width;
        work[j] = dot(j + 1, row, u);
        addMultiple(j, work, u[j], row);
    }
    for (Index j = 0; j < count; ++j) work[j] /= h;
    addMultiple(count, work, -dot(count, work, u) / (h + h), u);
    for (Index j = 0; j < count; ++j) subtractMultiples(j + 1, a + j * width, u[j], work, work[j], u);
}

// To tridiagonal form, with the vectors of the reflections in the rows of a and their h in d.
void reduceRows(Index n, Index stride, double* a, double* d, double* e) {
    for (Index i = n; i-- > 1;) {
        double* u = a + i * stride;
        d[i] = makeReflection(i, u, e[i]);
        if (d[i] != 0.0) reflectBlock(i, stride, a, u, d[i], e);
    }
    if (n > 0) d[0] = e[0] = 0.0;
}

// Multiplies the reflections, whose vectors stand in the rows of a and whose h in d, to the transposed
// transformation, and puts the diagonal of the tridiagonal matrix into d.
void accumulateReflections(Index order, Index width, double* a, double* d) {
    for (Index i = 0; i < order; ++i) {
        double* u = a + i * width;
        const double h = d[i];
        for (Index j = 0; j < i; ++j) {
            double* row = a + j * width;
            if (h != 0.0) addMultiple(i, row, -dot(i, u, row) / h, u);
            row[i] = 0.0;
        }
        d[i] = u[i];
        std::fill_n(u, i, 0.0);
        u[i] = 1.0;
    }
}

// Where the largest of values i .. n - 1 stands, the last of equal ones.
Index lastLargest(Index i, Index n, const double* values) {
    Index largest = i;
    for (Index j = i + 1; j < n; ++j)
        if (values[j] >= values[largest]) largest = j;
    return largest;
}

} // namespace

ErrorCode HouseholderTridiagonalise(Index n, Index stride, double* a, double* d, double* e) {
    reduceRows(n, stride, a, d, e);
    accumulateReflections(n, stride, a, d);
    transpose(n, stride, a);
    return success;
}

ErrorCode TridiagonalQL(Index n, Index stride, double* d, double* vectors, double* e) {
    transpose(n, stride, vectors);
    const ErrorCode code = rotateToDiagonal(n, d, e, classicIterations, {vectors, n, stride});
    transpose(n, stride, vectors);
    return code;
}

ErrorCode EigenSortDescending(Index n, Index stride, double* vectors, double* values) {
    for (Index i = 0; i < n; ++i) {
        const Index largest = lastLargest(i, n, values);
        if (largest == i) continue;
        std::swap(values[i], values[largest]);
        for (Index k = 0; k < n; ++k) std::swap(vectors[k * stride + i], vectors[k * stride + largest]);
    }
    return success;
}

ErrorCode SymmetricEigen(Index n, Index stride, double* vectors, double* values, const double* source) {
    if (n >= blockedOrder) return largeSymmetricEigen(n, stride, vectors, values, source);
    for (Index i = 0; i < n; ++i)
        for (Index j = 0; j < n; ++j) vectors[i * stride + j] = source[i * stride + j];
    Block<double> offDiagonal;
    if (offDiagonal.allocate(n) != success) return outOfMemory;
    HouseholderTridiagonalise(n, stride, vectors, values, offDiagonal.data());
    // A matrix that does not converge is reported as far as it came: kept so that reports stay comparable.
    static_cast<void>(TridiagonalQL(n, stride, values, vectors, offDiagonal.data()));
    return EigenSortDescending(n, stride, vectors, values);
}

ErrorCode SymmetricEigen(Matrix& vectors, Block<double>& values, const Matrix& source) {
    return SymmetricEigen(source.rows(), source.columns(), vectors.data(), values.data(), source.data());
}

ErrorCode symmetricEigenvalues(Matrix& a, Block<double>& values) {
    const Index n = a.rows();
    if (n >= blockedOrder) return largeEigenvalues(a, values);
    Block<double> offDiagonal;
    if (offDiagonal.allocate(n) != success) return outOfMemory;
    reduceRows(n, n, a.data(), values.data(), offDiagonal.data());
    for (Index i = 0; i < n; ++i) values[i] = a(i, i);
    static_cast<void>(rotateToDiagonal(n, values.data(), offDiagonal.data(), classicIterations));
    for (Index i = 0; i < n; ++i) std::swap(values[i], values[lastLargest(i, n, values.data())]);
    return success;
}
