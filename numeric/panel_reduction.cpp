#include "numeric/panel_reduction.h"

#include <algorithm>

#include "numeric/block_product.h"
#include "numeric/householder.h"
#include "numeric/pair.h"
#include "numeric/vector_loops.h"

namespace {

constexpr Index reducedRows = 32;
constexpr Index reflectedRows = 64;

// product (count) = A u for the symmetric A with the given lower triangle. Four rows are taken together, each
// serving as the column that mirrors it too, so that memory is read once.
void multiplySymmetric(Index count, Index stride, const double* a, const double* u, double* product) {
    std::fill_n(product, count, 0.0);
    Index j = 0;
    for (; j + 4 <= count; j += 4) {
        const double* rows[4];
        Pair factors[4], sums[4] = {};
        for (Index r = 0; r < 4; ++r) {
            rows[r] = a + (j + r) * stride;
            factors[r] = Pair{u[j + r], u[j + r]};
        }
        for (Index k = 0; k < j; k += 2) { // j is even
            const Pair other = loadPair(u + k);
            Pair column = loadPair(product + k);
            for (Index r = 0; r < 4; ++r) {
                const Pair elements = loadPair(rows[r] + k);
                column += factors[r] * elements;
                sums[r] += elements * other;
            }
            storePair(column, product + k);
        }
        for (Index r = 0; r < 4; ++r) {
            product[j + r] += sums[r][0] + sums[r][1] + rows[r][j + r] * u[j + r];
            for (Index k = 0; k < r; ++k) {
                product[j + r] += rows[r][j + k] * u[j + k];
                product[j + k] += rows[r][j + k] * u[j + r];
            }
        }
    }
    for (; j < count; ++j) {
        const double* row = a + j * stride;
        product[j] = dot(j + 1, row, u);
        addMultiple(j, product, u[j], row);
    }
}

// Row i with the reflections of the panel's rows behind it, up to `end`, that the rest has not seen yet, made
// a reflection of its own. Returns its h.
double reduceRow(Index i, Index first, Index end, Index stride, double* a, double* d, double* e,
                 Matrix& products) {
    double* u = a + i * stride;
    for (Index r = i + 1; r < end; ++r) {
        const double* other = a + r * stride;
        const double* product = products.row(r - first);
        subtractMultiples(i + 1, u, other[i], product, product[i], other);
    }
    d[i] = u[i];
    e[i] = 0.0;
    if (i == 0) return 0.0;
    const double h = makeReflection(i, u, e[i]);
    double* product = products.row(i - first);
    std::fill_n(product, products.columns(), 0.0);
    if (h == 0.0) {
        std::fill_n(u, i, 0.0);
        return 0.0;
    }
    multiplySymmetric(i, stride, a, u, product);
    for (Index r = i + 1; r < end; ++r) {
        const double* other = a + r * stride;
        const double* otherProduct = products.row(r - first);
        subtractMultiples(i, product, dot(i, otherProduct, u), other, dot(i, other, u), otherProduct);
    }
    for (Index j = 0; j < i; ++j) product[j] /= h;
    addMultiple(i, product, -dot(i, product, u) / (h + h), u);
    return h;
}

// Copies the reflections of rows first .. first + count - 1, zeros behind each.
void gatherReflections(Index first, Index count, Index stride, const double* a, Matrix& panel) {
    for (Index r = 0; r < count; ++r) {
        const double* u = a + (first + r) * stride;
        std::copy_n(u, first + r, panel.row(r));
        std::fill(panel.row(r) + first + r, panel.row(r) + panel.columns(), 0.0);
    }
}

// The upper triangle T (in rows of reflectedRows) with the product of the reflections = 1 - V' T V, V the
// panel.
void joinReflections(Index count, Index width, const Matrix& panel, const double* halves, double* triangle) {
    for (Index j = 0; j < count; ++j) {
        const double tau = halves[j] != 0.0 ? 1.0 / halves[j] : 0.0;
        double overlaps[reflectedRows] = {};
        for (Index k = 0; k < j; ++k) overlaps[k] = dot(width, panel.row(k), panel.row(j));
        for (Index i = 0; i < count; ++i) {
            double sum = 0.0;
            for (Index k = i; k < j; ++k) sum += triangle[i * reflectedRows + k] * overlaps[k];
            triangle[i * reflectedRows + j] = i < j ? -tau * sum : 0.0;
        }
        triangle[j * reflectedRows + j] = tau;
    }
}

} // namespace

ErrorCode PanelReduction::allocate(Index n) {
    return panel.allocate(reflectedRows, n) | products.allocate(reducedRows, n) |
           overlaps.allocate(2 * n, reflectedRows) | halves.allocate(n);
}

void reduceByPanels(Index n, Index stride, double* a, double* d, double* e, PanelReduction& work) {
    for (Index end = n; end > 0;) {
        const Index first = std::max<Index>(0, end - reducedRows);
        const Index count = end - first;
        for (Index i = end; i-- > first;)
            work.halves[i] = reduceRow(i, first, end, stride, a, d, e, work.products);
        const MatrixView vectors = {a + first * stride, stride, 1};
        const MatrixView products = {work.products.data(), n, 1};
        const MatrixView columns = {vectors.data, 1, stride};
        const MatrixView productColumns = {products.data, 1, n};
        addLowerProduct(first, count, -1.0, columns, products, a, stride);
        addLowerProduct(first, count, -1.0, productColumns, vectors, a, stride);
        end = first;
    }
}

void reflectRows(Index stride, const double* a, PanelReduction& work, Matrix& rows) {
    const Index n = rows.rows();
    double* overlaps = work.overlaps.data();
    double* turned = overlaps + n * reflectedRows;
    double triangle[reflectedRows * reflectedRows];
    for (Index first = 0; first < n; first += reflectedRows) {
        const Index count = std::min(reflectedRows, n - first);
        const Index width = first + count - 1;
        gatherReflections(first, count, stride, a, work.panel);
        joinReflections(count, width, work.panel, work.halves.data() + first, triangle);
        work.overlaps.fill(0.0);
        addProduct(n, count, width, 1.0, {rows.data(), n, 1}, {work.panel.data(), 1, n}, overlaps,
                   reflectedRows);
        addProduct(n, count, count, 1.0, {overlaps, reflectedRows, 1}, {triangle, reflectedRows, 1}, turned,
                   reflectedRows);
        addProduct(n, width, count, -1.0, {turned, reflectedRows, 1}, {work.panel.data(), n, 1}, rows.data(),
                   n);
    }
}
