#include "numeric/least_squares.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "numeric/vector_loops.h"
#include "numeric/wide.h"

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

// X has the explanatory columns about their means, scaled to length 1, and Q R is X with its columns in
// order.
struct Factoring {
    Index samples = 0;
    Index k = 0;
    double leastPivot = 1e-11; // or what the rounding of the data may leave
    Matrix columns;            // k x samples: X', then R' before the diagonal and the reflections behind
    Block<double> diagonal;    // k, of R
    Block<Index> order;        // k, which column stands at each place
    Block<Wide> means;         // k + 1, that of the purpose column last
    Block<double> lengths;     // k
    Matrix inverse;            // k x k, of R'
    Block<double> rest;        // samples, of what is to be solved
    Block<Wide> slopes;        // k, the products of the columns with the residuals
    Block<double> head;        // k, of Q' residuals

    [[nodiscard]] ErrorCode allocate() {
        return columns.allocate(k, samples) | diagonal.allocate(k) | order.allocate(k) |
               means.allocate(k + 1) | lengths.allocate(k) | inverse.allocate(k, k) | rest.allocate(samples) |
               slopes.allocate(k) | head.allocate(k);
    }
    double* at(Index place) { return columns.row(order[place]); }

    // Reflects `column`, from that row on, as turns the column at `place` to its first element.
    void reflect(Index place, double* column) {
        const double* direction = at(place) + place;
        const Index rows = samples - place;
        // direction'direction / 2 = -diagonal direction[0]
        const double factor = dot(rows, direction, column + place) / (diagonal[place] * direction[0]);
        addMultiple(rows, column + place, factor, direction);
    }
};

Wide meanOf(const double* first, Index count, Index stride) {
    Wide mean = 0;
    for (int pass = 0; pass < 2; ++pass) { // the second takes what rounding left
        Wide sum = 0;
        for (Index i = 0; i < count; ++i) sum += first[i * stride] - mean;
        mean += sum / Wide(count);
    }
    return mean;
}

// Returns singularMatrix for a column that does not vary or is not finite.
ErrorCode takeColumns(const RegressionColumns& from, Factoring& work) {
    for (Index i = 0; i < work.samples; ++i)
        for (Index c = 0; c < work.k; ++c) work.columns(c, i) = from.column(c)[i * from.stride];
    const double root = std::sqrt(static_cast<double>(work.samples));
    for (Index c = 0; c < work.k; ++c) {
        double* column = work.columns.row(c);
        const Wide mean = meanOf(column, work.samples, 1);
        for (Index i = 0; i < work.samples; ++i) column[i] = static_cast<double>(column[i] - mean);
        const double length = std::sqrt(dot(work.samples, column, column));
        if (!(length > 0.0) || !std::isfinite(length)) return singularMatrix;
        for (Index i = 0; i < work.samples; ++i) column[i] /= length;
        const double noise = 4.0 * epsilon * std::fabs(static_cast<double>(mean)) * root / length;
        work.leastPivot = std::max(work.leastPivot, noise);
        work.means[c] = mean;
        work.lengths[c] = length;
        work.order[c] = c;
    }
    work.means[work.k] = meanOf(from.column(work.k), work.samples, from.stride);
    return std::isfinite(work.means[work.k]) ? success : singularMatrix;
}

// Puts the column of which most is left to a place; returns its length.
double pivot(Index place, Factoring& work) {
    double longest = 0.0;
    Index best = place;
    for (Index other = place; other < work.k; ++other) {
        const double* rest = work.at(other) + place;
        const double square = dot(work.samples - place, rest, rest);
        if (square > longest) {
            longest = square;
            best = other;
        }
    }
    std::swap(work.order[place], work.order[best]);
    return std::sqrt(longest);
}

// Returns singularMatrix where the rank is below k.
ErrorCode factorise(Factoring& work) {
    if (work.samples <= work.k) return singularMatrix;
    for (Index place = 0; place < work.k; ++place) {
        const double length = pivot(place, work);
        if (!(length > work.leastPivot)) return singularMatrix;
        double& head = work.at(place)[place];
        work.diagonal[place] = std::copysign(length, -head);
        head -= work.diagonal[place];
        for (Index other = place + 1; other < work.k; ++other) work.reflect(place, work.at(other));
    }
    return success;
}

// What fit leaves of the purpose column, and of the products of the columns with the residuals, which are to
// vanish: both in wide sums over the data as they are.
void findRest(const RegressionColumns& from, Factoring& work, const LeastSquares& fit) {
    std::fill(work.slopes.begin(), work.slopes.end(), Wide(0));
    for (Index i = 0; i < work.samples; ++i) {
        const double* row = from.values + i * from.stride;
        Wide rest = row[from.purpose] - work.means[work.k] - fit.residuals[i];
        for (Index c = 0; c < work.k; ++c) {
            const Wide deviation = row[from.variables[c]] - work.means[c];
            rest -= fit.coefficients[c] * deviation;
            work.slopes[c] += fit.residuals[i] * deviation;
        }
        work.rest[i] = static_cast<double>(rest);
    }
}

// Adds to fit what solves residuals + X coefficients = rest and X' residuals = -slopes together.
void addSolution(Factoring& work, LeastSquares& fit) {
    double* y = work.rest.data();
    double* head = work.head.data();
    for (Index i = 0; i < work.k; ++i) work.reflect(i, y);
    for (Index i = 0; i < work.k; ++i) {
        const double* column = work.at(i);
        const Index c = work.order[i];
        const double slope = static_cast<double>(work.slopes[c]) / work.lengths[c];
        head[i] = -(slope + dot(i, column, head)) / work.diagonal[i];
    }
    for (Index i = work.k; i-- > 0;) {
        y[i] = (y[i] - head[i]) / work.diagonal[i];
        addMultiple(i, y, -y[i], work.at(i));
        const Index c = work.order[i];
        fit.coefficients[c] += y[i] / work.lengths[c];
    }
    std::copy_n(head, work.k, y);
    for (Index i = work.k; i-- > 0;) work.reflect(i, y);
    for (Index i = 0; i < work.samples; ++i) fit.residuals[i] += y[i];
}

// R'^-1, a triangle with a row for each place.
void invertTriangle(Factoring& work) {
    Matrix& inverse = work.inverse;
    for (Index i = 0; i < work.k; ++i) {
        inverse(i, i) = 1.0 / work.diagonal[i];
        for (Index j = 0; j < i; ++j) {
            double sum = 0.0;
            for (Index l = j; l < i; ++l) sum += work.at(i)[l] * inverse(l, j);
            inverse(i, j) = -sum / work.diagonal[i];
        }
    }
}

// (X'X)^-1 = R^-1 R'^-1, and R'^-1 as its root, in the order and the scales of the columns.
void composeInverse(const Factoring& work, LeastSquares& fit) {
    for (Index i = 0; i < work.k; ++i) {
        for (Index j = 0; j <= i; ++j) {
            fit.root(i, work.order[j]) = work.inverse(i, j) / work.lengths[work.order[j]];
            double sum = 0.0;
            for (Index l = i; l < work.k; ++l) sum += work.inverse(l, i) * work.inverse(l, j);
            const Index a = work.order[i], b = work.order[j];
            fit.inverse(a, b) = fit.inverse(b, a) = sum / work.lengths[a] / work.lengths[b];
        }
    }
}

// The constant and the sums of squares.
void summarise(const RegressionColumns& from, const Factoring& work, LeastSquares& fit) {
    Wide constant = work.means[work.k];
    for (Index c = 0; c < work.k; ++c) constant -= fit.coefficients[c] * work.means[c];
    fit.constant = static_cast<double>(constant);
    Wide total = 0;
    Wide residual = 0;
    for (Index i = 0; i < work.samples; ++i) {
        const Wide deviation = from.column(work.k)[i * from.stride] - work.means[work.k];
        total += deviation * deviation;
        residual += Wide(fit.residuals[i]) * fit.residuals[i];
    }
    fit.totalSum = static_cast<double>(total);
    fit.residualSum = static_cast<double>(residual);
}

} // namespace

ErrorCode fitLeastSquares(const RegressionColumns& from, LeastSquares& fit) {
    Factoring work;
    work.samples = from.samples;
    work.k = from.k;
    ErrorCode code = work.allocate() | fit.coefficients.allocate(from.k) |
                     fit.inverse.allocate(from.k, from.k) | fit.root.allocate(from.k, from.k) |
                     fit.residuals.allocate(from.samples);
    if (code == success) code = takeColumns(from, work);
    if (code == success) code = factorise(work);
    if (code != success) return code;
    // From nothing to the solution, and two corrections of it (Bjorck 1967).
    for (int pass = 0; pass < 3; ++pass) {
        findRest(from, work, fit);
        addSolution(work, fit);
    }
    invertTriangle(work);
    composeInverse(work, fit);
    summarise(from, work, fit);
    return success;
}
