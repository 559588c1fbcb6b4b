#include "numeric/eigen.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numeric/block.h"

// Inside, vectors are held as rows, so that the inner loops run along contiguous memory; the matrix is
// transposed where it crosses the interface, which costs next to nothing.

namespace {

constexpr int iterationLimit = 31;

void transpose(Index order, Index width, double* a) {
    for (Index i = 1; i < order; ++i)
        for (Index j = 0; j < i; ++j) std::swap(a[i * width + j], a[j * width + i]);
}

// The three loops over rows that take the time are written out for two or four elements, which lets a
// compiler use vector registers without being asked to.

double dot(Index count, const double* a, const double* b) {
    double sums[4] = {};
    Index k = 0;
    for (; k + 4 <= count; k += 4)
        for (Index lane = 0; lane < 4; ++lane) sums[lane] += a[k + lane] * b[k + lane];
    double sum = (sums[0] + sums[1]) + (sums[2] + sums[3]);
    for (; k < count; ++k) sum += a[k] * b[k];
    return sum;
}

// target += f a
void addMultiple(Index count, double* __restrict target, double f, const double* __restrict a) {
    Index k = 0;
    for (; k + 2 <= count; k += 2) {
        target[k] += f * a[k];
        target[k + 1] += f * a[k + 1];
    }
    for (; k < count; ++k) target[k] += f * a[k];
}

// target -= f a + g b
void subtractMultiples(Index count, double* __restrict target, double f, const double* __restrict a, double g,
                       const double* __restrict b) {
    Index k = 0;
    for (; k + 2 <= count; k += 2) {
        target[k] -= f * a[k] + g * b[k];
        target[k + 1] -= f * a[k + 1] + g * b[k + 1];
    }
    for (; k < count; ++k) target[k] -= f * a[k] + g * b[k];
}

struct Rotation {
    double c;
    double s;
};

void rotateRows(Index order, double* __restrict high, double* __restrict low, Rotation rotation) {
    for (Index k = 0; k < order; ++k) {
        const double f = high[k];
        high[k] = rotation.s * low[k] + rotation.c * f;
        low[k] = rotation.c * low[k] - rotation.s * f;
    }
}

// rotateRows of high and middle by first, then of middle and low by second, in one pass.
void rotateThreeRows(Index order, double* __restrict high, double* __restrict middle, double* __restrict low,
                     Rotation first, Rotation second) {
    const double c1 = first.c, s1 = first.s, c2 = second.c, s2 = second.s;
    Index k = 0;
    for (; k + 2 <= order; k += 2) {
        const double h0 = high[k], h1 = high[k + 1];
        const double m0 = middle[k], m1 = middle[k + 1];
        const double l0 = low[k], l1 = low[k + 1];
        const double f0 = c1 * m0 - s1 * h0, f1 = c1 * m1 - s1 * h1;
        high[k] = s1 * m0 + c1 * h0;
        high[k + 1] = s1 * m1 + c1 * h1;
        middle[k] = s2 * l0 + c2 * f0;
        middle[k + 1] = s2 * l1 + c2 * f1;
        low[k] = c2 * l0 - s2 * f0;
        low[k + 1] = c2 * l1 - s2 * f1;
    }
    if (k == order) return;
    const double f = c1 * middle[k] - s1 * high[k];
    high[k] = s1 * middle[k] + c1 * high[k];
    middle[k] = s2 * low[k] + c2 * f;
    low[k] = c2 * low[k] - s2 * f;
}

// The rotations of a QL step go from the last pair of rows to the first; each waits for the one after it, so
// that the row that both change is loaded once.
struct RowRotations {
    Index order;
    Index width;
    double* high = nullptr; // of the waiting rotation, its other row before it in memory
    Rotation waiting{};
};

void rotate(RowRotations& rows, double* high, Rotation rotation) {
    if (rows.high == nullptr) {
        rows.high = high;
        rows.waiting = rotation;
        return;
    }
    rotateThreeRows(rows.order, rows.high, high, high - rows.width, rows.waiting, rotation);
    rows.high = nullptr;
}

void finish(const RowRotations& rows) {
    if (rows.high != nullptr) rotateRows(rows.order, rows.high, rows.high - rows.width, rows.waiting);
}

// Turns u, row i of the matrix (count = i elements), into the vector of the reflection that clears all but
// its last element. Returns half of its squared length, 0 where there is nothing to clear; offDiagonal gets
// the element that stays.
double makeReflection(Index count, double* u, double& offDiagonal) {
    offDiagonal = u[count - 1];
    if (count == 1) return 0.0;
    double scale = 0.0;
    for (Index k = 0; k < count; ++k) scale += std::fabs(u[k]);
    if (scale == 0.0) return 0.0;
    for (Index k = 0; k < count; ++k) u[k] /= scale;
    const double h = dot(count, u, u);
    const double last = u[count - 1];
    const double g = last >= 0.0 ? -std::sqrt(h) : std::sqrt(h);
    offDiagonal = scale * g;
    u[count - 1] = last - g;
    return h - last * g;
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

// The first m >= l after which the tridiagonal matrix falls apart; the last index where it does not.
Index endOfBlock(Index l, Index order, const double* d, const double* e) {
    Index m = l;
    for (; m + 1 < order; ++m) {
        const double size = std::fabs(d[m]) + std::fabs(d[m + 1]);
        if (std::fabs(e[m]) + size == size) break;
    }
    return m;
}

// One implicit QL step on the block l .. m, e[i] between i and i + 1.
void qlStep(Index l, Index m, Index order, Index width, double* d, double* e, double* rows) {
    const double slope = (d[l + 1] - d[l]) / (2.0 * e[l]);
    const double root = std::hypot(slope, 1.0);
    double g = d[m] - d[l] + e[l] / (slope + (slope >= 0.0 ? root : -root));
    double s = 1.0;
    double c = 1.0;
    double p = 0.0;
    RowRotations rotations{order, width, nullptr, {}};
    for (Index i = m; i-- > l;) {
        const double f = s * e[i];
        const double b = c * e[i];
        const double radius = std::hypot(f, g);
        e[i + 1] = radius;
        if (radius == 0.0) { // underflow: the block falls apart here
            d[i + 1] -= p;
            e[m] = 0.0;
            finish(rotations);
            return;
        }
        s = f / radius;
        c = g / radius;
        g = d[i + 1] - p;
        const double r = (d[i] - g) * s + 2.0 * c * b;
        p = s * r;
        d[i + 1] = g + p;
        g = c * r - b;
        rotate(rotations, rows + (i + 1) * width, {c, s});
    }
    finish(rotations);
    d[l] -= p;
    e[l] = g;
    e[m] = 0.0;
}

ErrorCode iterate(Index order, Index width, double* d, double* e, double* rows) {
    for (Index l = 0; l < order; ++l) {
        int iterations = 0;
        for (Index m = endOfBlock(l, order, d, e); m != l; m = endOfBlock(l, order, d, e)) {
            if (++iterations > iterationLimit) return decompositionFailed;
            qlStep(l, m, order, width, d, e, rows);
        }
    }
    return success;
}

} // namespace

ErrorCode HouseholderTridiagonalise(Index n, Index stride, double* a, double* d, double* e) {
    for (Index i = n; i-- > 1;) {
        double* u = a + i * stride;
        d[i] = makeReflection(i, u, e[i]);
        if (d[i] != 0.0) reflectBlock(i, stride, a, u, d[i], e);
    }
    if (n > 0) d[0] = e[0] = 0.0;
    accumulateReflections(n, stride, a, d);
    transpose(n, stride, a);
    return success;
}

ErrorCode TridiagonalQL(Index n, Index stride, double* d, double* vectors, double* e) {
    if (n == 0) return success;
    std::move(e + 1, e + n, e);
    e[n - 1] = 0.0;
    transpose(n, stride, vectors);
    const ErrorCode code = iterate(n, stride, d, e, vectors);
    transpose(n, stride, vectors);
    return code;
}

ErrorCode EigenSortDescending(Index n, Index stride, double* vectors, double* values) {
    for (Index i = 0; i < n; ++i) {
        Index largest = i;
        for (Index j = i + 1; j < n; ++j)
            if (values[j] >= values[largest]) largest = j;
        if (largest == i) continue;
        std::swap(values[i], values[largest]);
        for (Index k = 0; k < n; ++k) std::swap(vectors[k * stride + i], vectors[k * stride + largest]);
    }
    return success;
}

ErrorCode SymmetricEigen(Index n, Index stride, double* vectors, double* values, const double* source) {
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
