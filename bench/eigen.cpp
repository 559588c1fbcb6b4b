#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include "bench/bench.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"

namespace {

// The same reduction as it stands in the textbooks, down the columns.
void reducePlainly(Matrix& a, Block<double>& d, Block<double>& e) {
    const Index n = a.rows();
    for (Index i = n - 1; i > 0; --i) {
        double h = 0.0, scale = 0.0;
        for (Index k = 0; k < i; ++k) scale += std::fabs(a(i, k));
        if (i == 1 || scale == 0.0) {
            e[i] = a(i, i - 1);
            d[i] = 0.0;
            continue;
        }
        for (Index k = 0; k < i; ++k) {
            a(i, k) /= scale;
            h += a(i, k) * a(i, k);
        }
        const double g = a(i, i - 1) >= 0.0 ? -std::sqrt(h) : std::sqrt(h);
        e[i] = scale * g;
        h -= a(i, i - 1) * g;
        a(i, i - 1) -= g;
        double f = 0.0;
        for (Index j = 0; j < i; ++j) {
            a(j, i) = a(i, j) / h;
            double sum = 0.0;
            for (Index k = 0; k <= j; ++k) sum += a(j, k) * a(i, k);
            for (Index k = j + 1; k < i; ++k) sum += a(k, j) * a(i, k);
            e[j] = sum / h;
            f += e[j] * a(i, j);
        }
        for (Index j = 0; j < i; ++j) {
            e[j] -= f / (h + h) * a(i, j);
            for (Index k = 0; k <= j; ++k) a(j, k) -= a(i, j) * e[k] + e[j] * a(i, k);
        }
        d[i] = h;
    }
    d[0] = e[0] = 0.0;
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; d[i] != 0.0 && j < i; ++j) {
            double g = 0.0;
            for (Index k = 0; k < i; ++k) g += a(i, k) * a(k, j);
            for (Index k = 0; k < i; ++k) a(k, j) -= g * a(k, i);
        }
        d[i] = a(i, i);
        a(i, i) = 1.0;
        for (Index j = 0; j < i; ++j) a(j, i) = a(i, j) = 0.0;
    }
}

void rotatePlainly(Matrix& z, Block<double>& d, Block<double>& e) {
    const Index n = z.rows();
    std::rotate(e.begin(), e.begin() + 1, e.end());
    e[n - 1] = 0.0;
    for (Index l = 0; l < n; ++l) {
        for (Index m = l;; m = l) {
            while (m < n - 1 && std::fabs(e[m]) + std::fabs(d[m]) + std::fabs(d[m + 1]) !=
                                    std::fabs(d[m]) + std::fabs(d[m + 1])) {
                ++m;
            }
            if (m == l) break;
            double g = (d[l + 1] - d[l]) / (2.0 * e[l]);
            g = d[m] - d[l] + e[l] / (g + std::copysign(std::hypot(g, 1.0), g));
            double s = 1.0, c = 1.0, p = 0.0;
            for (Index i = m - 1; i >= l; --i) {
                double f = s * e[i];
                const double b = c * e[i], r = std::hypot(f, g);
                e[i + 1] = r;
                s = f / r;
                c = g / r;
                g = d[i + 1] - p;
                const double q = (d[i] - g) * s + 2.0 * c * b;
                p = s * q;
                d[i + 1] = g + p;
                g = c * q - b;
                for (Index k = 0; k < n; ++k) {
                    f = z(k, i + 1);
                    z(k, i + 1) = s * z(k, i) + c * f;
                    z(k, i) = c * z(k, i) - s * f;
                }
            }
            d[l] -= p;
            e[l] = g;
            e[m] = 0.0;
        }
    }
}

void compareEigen(Index n) {
    std::mt19937 random(4);
    std::normal_distribution<double> normal;
    Matrix source, plain, vectors;
    Block<double> values, d, e;
    ErrorCode code = source.allocate(n, n) | plain.allocate(n, n) | vectors.allocate(n, n);
    code |= values.allocate(n) | d.allocate(n) | e.allocate(n);
    if (code != success) return;
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j <= i; ++j) source(i, j) = source(j, i) = normal(random);
    }
    std::copy(source.begin(), source.end(), plain.begin());

    const auto start = std::chrono::steady_clock::now();
    if (SymmetricEigen(vectors, values, source) != success) return;
    const double seconds = secondsSince(start);
    const auto plainStart = std::chrono::steady_clock::now();
    reducePlainly(plain, d, e);
    rotatePlainly(plain, d, e);
    const double plainSeconds = secondsSince(plainStart);
    std::sort(d.begin(), d.end(), std::greater<>());
    double largest = 0.0;
    for (Index k = 0; k < n; ++k) largest = std::max(largest, std::fabs(d[k] - values[k]));
    std::printf("eigen decomposition of order %td: %.4f s, down the columns %.4f s, %.1f times as long; "
                "eigenvalues differ by %.0e\n",
                n, seconds, plainSeconds, plainSeconds / seconds, largest);
}

// By the factors of a and a right-hand side for each column of the inverse.
void solvePlainly(const Matrix& source, Matrix& a, Matrix& inverse) {
    const Index n = source.rows();
    std::copy(source.begin(), source.end(), a.begin());
    inverse.fill(0.0);
    for (Index i = 0; i < n; ++i) inverse(i, i) = 1.0;
    for (Index j = 0; j < n; ++j) {
        Index pivot = j;
        for (Index i = j + 1; i < n; ++i)
            if (std::fabs(a(i, j)) > std::fabs(a(pivot, j))) pivot = i;
        std::swap_ranges(a.row(j), a.row(j) + n, a.row(pivot));
        std::swap_ranges(inverse.row(j), inverse.row(j) + n, inverse.row(pivot));
        for (Index i = 0; i < n; ++i) {
            const double factor = i == j ? 0.0 : a(i, j) / a(j, j);
            for (Index k = j; k < n; ++k) a(i, k) -= factor * a(j, k);
            for (Index k = 0; k < n; ++k) inverse(i, k) -= factor * inverse(j, k);
        }
    }
    for (Index i = 0; i < n; ++i)
        for (Index k = 0; k < n; ++k) inverse(i, k) /= a(i, i);
}

void compareInverse(Index n) {
    std::mt19937 random(5);
    std::normal_distribution<double> normal;
    Matrix source, scratch, inverse, plain;
    const ErrorCode code =
        source.allocate(n, n) | scratch.allocate(n, n) | inverse.allocate(n, n) | plain.allocate(n, n);
    if (code != success) return;
    for (double& element : source) element = normal(random);
    std::copy(source.begin(), source.end(), scratch.begin());
    double determinant = 0.0;
    const auto start = std::chrono::steady_clock::now();
    if (MatrixInverse(scratch, inverse, determinant) != success) return;
    const double seconds = secondsSince(start);
    const auto plainStart = std::chrono::steady_clock::now();
    solvePlainly(source, scratch, plain);
    const double plainSeconds = secondsSince(plainStart);
    double largest = 0.0;
    for (Index k = 0; k < n * n; ++k)
        largest = std::max(largest, std::fabs(plain.data()[k] - inverse.data()[k]));
    std::printf("inverse of order %td: %.4f s, by elimination %.4f s, %.1f times as long; elements differ by "
                "%.0e\n",
                n, seconds, plainSeconds, plainSeconds / seconds, largest);
}

} // namespace

void benchEigen() {
    for (const Index n : {200, 300, 1000}) compareEigen(n);
    for (const Index n : {300, 1000}) compareInverse(n);
}
