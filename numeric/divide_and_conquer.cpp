#include "numeric/divide_and_conquer.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/block_product.h"
#include "numeric/secular_equation.h"
#include "numeric/tridiagonal_ql.h"

namespace {

// What is no larger is not halved.
constexpr Index smallest = 32;

// Rows and columns first .. end - 1 of the matrix, halved before `middle`.
struct Part {
    Index first;
    Index middle;
    Index end;

    Index size() const { return end - first; }
};

// The rows of a part in the order of their use: those that a merge changes, by ascending value, then those
// that are eigenvectors of the whole already.
struct Sorted {
    Index* rows;
    Index changed = 0;
};

void solveSmallest(Index first, Index size, double* d, double* e, DivideWork& work) {
    const Index n = work.rows.columns();
    double* square = work.rows.row(first) + first;
    for (Index i = 0; i < size; ++i) {
        std::fill_n(work.rows.row(first + i), n, 0.0);
        square[i * n + i] = 1.0;
    }
    // What does not converge is taken as far as it came, as in SymmetricEigen.
    static_cast<void>(rotateToDiagonal(size, d + first, e + first, patientIterations, {square, size, n}));
}

void sortRows(Index first, Index end, const double* d, Index* order) {
    for (Index i = first; i < end; ++i) *order++ = i;
    std::sort(order - (end - first), order,
              [d](Index a, Index b) { return d[a] != d[b] ? d[a] < d[b] : a < b; });
}

// Fills work.joint with the z of length 1 that joins the halves to diag(d) + rho z z'. Returns rho.
double joinHalves(const Part& part, double beside, DivideWork& work) {
    const double sign = beside < 0.0 ? -1.0 : 1.0;
    for (Index i = part.first; i < part.end; ++i) {
        const double* row = work.rows.row(i);
        const bool upper = i < part.middle;
        work.halves[i] = upper ? -1 : 1;
        work.joint[i] = (upper ? row[part.middle - 1] : sign * row[part.middle]) * std::sqrt(0.5);
    }
    return 2.0 * std::fabs(beside);
}

// Turns two rows of as good as the same value so that z has no element for `gone`; true if that changes no
// value by more than the tolerance.
bool turnAway(const Part& part, Index gone, Index kept, double tolerance, double* d, DivideWork& work) {
    Block<double>& z = work.joint;
    const double length = std::hypot(z[gone], z[kept]);
    const double cosine = z[kept] / length;
    const double sine = z[gone] / length;
    if (std::fabs((d[kept] - d[gone]) * cosine * sine) > tolerance) return false;
    z[kept] = length;
    z[gone] = 0.0;
    double* row = work.rows.row(gone);
    double* other = work.rows.row(kept);
    for (Index j = part.first; j < part.end; ++j) {
        const double x = row[j];
        row[j] = cosine * x - sine * other[j];
        other[j] = cosine * other[j] + sine * x;
    }
    const double before = d[gone];
    d[gone] = before * cosine * cosine + d[kept] * sine * sine;
    d[kept] = before * sine * sine + d[kept] * cosine * cosine;
    if (work.halves[gone] != work.halves[kept]) work.halves[gone] = work.halves[kept] = 0;
    return true;
}

// Sorts the rows of the part, with those of an element of z that is nothing or made nothing behind.
Sorted deflate(const Part& part, double rho, double* d, DivideWork& work) {
    const Block<double>& z = work.joint;
    double greatest = 0.0;
    for (Index i = part.first; i < part.end; ++i) {
        greatest = std::max({greatest, std::fabs(d[i]), std::fabs(z[i])});
    }
    const double tolerance = 8.0 * std::numeric_limits<double>::epsilon() * greatest;
    Sorted sorted = {work.order.data() + part.first};
    sortRows(part.first, part.end, d, sorted.rows);
    Index* gone = work.places.data() + part.first;
    Index waiting = -1; // a row whose neighbour is not known yet
    for (Index k = 0; k < part.size(); ++k) {
        const Index i = sorted.rows[k];
        if (rho * std::fabs(z[i]) <= tolerance) {
            *gone++ = i;
            continue;
        }
        if (waiting >= 0) {
            if (turnAway(part, waiting, i, tolerance, d, work))
                *gone++ = waiting;
            else
                sorted.rows[sorted.changed++] = waiting;
        }
        waiting = i;
    }
    if (waiting >= 0) sorted.rows[sorted.changed++] = waiting;
    std::copy(work.places.data() + part.first, gone, sorted.rows + sorted.changed);
    return sorted;
}

// How many rows that a merge changes have something in the first half.
struct HalfCounts {
    Index firstAlone = 0; // and nothing in the second
    Index first = 0;
};

// Copies the rows in the order of their halves, the unchanged ones last, and fills work.places with the place
// of each changed one.
HalfCounts copyRows(const Part& part, const Sorted& sorted, const double* d, DivideWork& work) {
    HalfCounts counts;
    Index place = part.first;
    const auto copyRow = [&](Index row) {
        work.values[place] = d[row];
        std::copy_n(work.rows.row(row) + part.first, part.size(), work.copy.row(place) + part.first);
        return place++ - part.first;
    };
    for (const Index half : {-1, 0, 1}) {
        for (Index k = 0; k < sorted.changed; ++k) {
            if (work.halves[sorted.rows[k]] == half) work.places[part.first + k] = copyRow(sorted.rows[k]);
        }
        if (half < 0) counts.firstAlone = place - part.first;
        if (half == 0) counts.first = place - part.first;
    }
    for (Index k = sorted.changed; k < part.size(); ++k) copyRow(sorted.rows[k]);
    return counts;
}

// Fills `count` rows of work.turns with the eigenvectors of diag(poles) + rho sizes sizes', elements at their
// places, and d with the eigenvalues.
void findTurns(const Part& part, Index count, double rho, double* d, DivideWork& work) {
    const double* poles = work.poles.data() + part.first;
    double* sizes = work.sizes.data() + part.first;
    double* products = work.products.data() + part.first;
    for (Index j = 0; j < count; ++j) {
        d[part.first + j] = findSecularRoot(count, j, poles, sizes, rho, work.turns.row(part.first + j));
    }
    // The elements of the z whose roots these are to the last digit.
    std::fill_n(products, count, 1.0);
    for (Index j = 0; j < count; ++j) {
        const double* distances = work.turns.row(part.first + j);
        for (Index i = 0; i < j; ++i) products[i] *= distances[i] / (poles[i] - poles[j]);
        products[j] *= -distances[j];
        for (Index i = j + 1; i < count; ++i) products[i] *= distances[i] / (poles[i] - poles[j]);
    }
    for (Index i = 0; i < count; ++i) sizes[i] = std::copysign(std::sqrt(std::fabs(products[i])), sizes[i]);
    for (Index j = 0; j < count; ++j) {
        double* row = work.turns.row(part.first + j);
        double squares = 0.0;
        for (Index i = 0; i < count; ++i) {
            products[i] = sizes[i] / row[i];
            squares += products[i] * products[i];
        }
        const double scale = 1.0 / std::sqrt(squares);
        for (Index i = 0; i < count; ++i) row[work.places[part.first + i]] = products[i] * scale;
    }
}

void merge(const Part& part, double beside, double* d, DivideWork& work) {
    const Index n = work.rows.columns();
    const double rho = joinHalves(part, beside, work);
    const Sorted sorted = deflate(part, rho, d, work);
    const HalfCounts counts = copyRows(part, sorted, d, work);
    for (Index k = 0; k < sorted.changed; ++k) {
        work.poles[part.first + k] = d[sorted.rows[k]];
        work.sizes[part.first + k] = work.joint[sorted.rows[k]];
    }
    findTurns(part, sorted.changed, rho, d, work);

    // The halves of the rows are multiplied apart, each by the rows that have something there.
    for (Index k = 0; k < sorted.changed; ++k)
        std::fill_n(work.rows.row(part.first + k) + part.first, part.size(), 0.0);
    const double* turns = work.turns.row(part.first);
    double* out = work.rows.row(part.first);
    addProduct(sorted.changed, part.middle - part.first, counts.first, 1.0, {turns, n, 1},
               {work.copy.row(part.first) + part.first, n, 1}, out + part.first, n);
    addProduct(sorted.changed, part.end - part.middle, sorted.changed - counts.firstAlone, 1.0,
               {turns + counts.firstAlone, n, 1},
               {work.copy.row(part.first + counts.firstAlone) + part.middle, n, 1}, out + part.middle, n);
    for (Index k = part.first + sorted.changed; k < part.end; ++k) {
        d[k] = work.values[k];
        std::copy_n(work.copy.row(k) + part.first, part.size(), work.rows.row(k) + part.first);
    }
}

void solve(Index first, Index end, double* d, double* e, DivideWork& work) {
    if (end - first <= smallest) return solveSmallest(first, end - first, d, e, work);
    const Part part = {first, first + (end - first) / 2, end};
    const double beside = e[part.middle];
    d[part.middle - 1] -= std::fabs(beside);
    d[part.middle] -= std::fabs(beside);
    solve(part.first, part.middle, d, e, work);
    solve(part.middle, part.end, d, e, work);
    merge(part, beside, d, work);
}

} // namespace

ErrorCode DivideWork::allocate(Index n) {
    ErrorCode code = rows.allocate(n, n) | copy.allocate(n, n) | turns.allocate(n, n);
    for (Block<double>* vector : {&joint, &poles, &sizes, &products, &values}) code |= vector->allocate(n);
    for (Block<Index>* vector : {&order, &halves, &places}) code |= vector->allocate(n);
    return code;
}

void divideAndConquer(Index n, double* d, double* e, DivideWork& work) {
    solve(0, n, d, e, work);
    sortRows(0, n, d, work.order.data());
}
