#include "analysis/multivariate/factor/factor_rotation.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "analysis/multivariate/factor/factor_extraction.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/product.h"

namespace {

constexpr double smallestChange = 1e-5;
constexpr int mostSweeps = 10000;
// Of the diagonal of the inverse factor correlations: a factor that the others explain.
constexpr double greatestInflation = 1e6;
using std::numbers::pi;

// The angle that turns columns k and l to the greatest criterion.
double bestAngle(Index p, Index factors, Index k, Index l, double gamma, const double* loadings) {
    double a = 0.0, b = 0.0, c = 0.0, d = 0.0;
    for (Index j = 0; j < p; ++j) {
        const double x = loadings[j * factors + k];
        const double y = loadings[j * factors + l];
        const double u = x * x - y * y;
        const double w = x * y;
        a += u;
        b += w;
        c += u * u - 4.0 * w * w;
        d += u * w;
    }
    const double count = static_cast<double>(p);
    const double numerator = 4.0 * count * d - 4.0 * gamma * a * b;
    const double denominator = count * c - gamma * (a + 2.0 * b) * (a - 2.0 * b);
    double angle = std::atan(numerator / denominator);
    if (denominator < 0.0) angle += numerator < 0.0 ? -pi : pi;
    return std::isnan(angle) ? 0.0 : angle / 4.0;
}

void turnColumns(Index p, Index factors, Index k, Index l, double cosine, double sine, double* loadings) {
    for (Index j = 0; j < p; ++j) {
        const double x = loadings[j * factors + k];
        const double y = loadings[j * factors + l];
        loadings[j * factors + k] = cosine * x + sine * y;
        loadings[j * factors + l] = cosine * y - sine * x;
    }
}

struct AxisWork {
    Block<double> axes;      // factors x factors, axis k in column k
    Block<double> weights;   // p
    Block<double> criterion; // factors x factors
    Block<double> vectors;   // factors x factors
    Block<double> values;    // factors

    ErrorCode allocate(Index p, Index factors) {
        return axes.allocate(factors * factors) | weights.allocate(p) |
               criterion.allocate(factors * factors) | vectors.allocate(factors * factors) |
               values.allocate(factors);
    }
};

// The squared projections of each variable on all axes but k, centred by gamma.
void findWeights(Index p, Index factors, Index k, double gamma, const double* structure, double* weights) {
    double total = 0.0;
    for (Index j = 0; j < p; ++j) {
        const double* row = structure + j * factors;
        double sum = 0.0;
        for (Index l = 0; l < factors; ++l) sum += row[l] * row[l];
        weights[j] = sum - row[k] * row[k];
        total += weights[j];
    }
    for (Index j = 0; j < p; ++j) weights[j] -= gamma * total / static_cast<double>(p);
}

// out (factors x factors) = A' diag(weights) A
void weightedProducts(Index p, Index factors, const double* a, const double* weights, double* out) {
    std::fill_n(out, factors * factors, 0.0);
    for (Index j = 0; j < p; ++j) {
        const double* row = a + j * factors;
        for (Index k = 0; k < factors; ++k) {
            const double product = row[k] * weights[j];
            for (Index l = 0; l < factors; ++l) out[k * factors + l] += product * row[l];
        }
    }
}

// Replaces axis k by the last eigenvector. Returns the largest change of an element.
double replaceAxis(Index factors, Index k, AxisWork& work) {
    double inner = 0.0;
    for (Index a = 0; a < factors; ++a) {
        inner += work.vectors[a * factors + factors - 1] * work.axes[a * factors + k];
    }
    const double sign = inner < 0.0 ? -1.0 : 1.0;
    double change = 0.0;
    for (Index a = 0; a < factors; ++a) {
        const double element = sign * work.vectors[a * factors + factors - 1];
        change = std::max(change, std::fabs(element - work.axes[a * factors + k]));
        work.axes[a * factors + k] = element;
    }
    return change;
}

// Finds axis k anew with the others as they are. Returns 0 or outOfMemory.
ErrorCode improveAxis(int p, int factors, Index k, double gamma, const double* loadings, AxisWork& work,
                      double* structure, double& change) {
    const Index variables = p;
    const Index columns = factors;
    findWeights(variables, columns, k, gamma, structure, work.weights.data());
    weightedProducts(variables, columns, loadings, work.weights.data(), work.criterion.data());
    const ErrorCode code =
        SymmetricEigen(factors, factors, work.vectors.data(), work.values.data(), work.criterion.data());
    if (code != success) return code;
    change = std::max(change, replaceAxis(columns, k, work));
    for (Index j = 0; j < variables; ++j) {
        double sum = 0.0;
        for (Index a = 0; a < columns; ++a) sum += loadings[j * columns + a] * work.axes[a * columns + k];
        structure[j * columns + k] = sum;
    }
    return success;
}

} // namespace

void rotateOrthogonal(int p, int factors, double gamma, double* loadings) {
    const Index variables = p;
    const Index columns = factors;
    for (int sweep = 0; sweep < mostSweeps; ++sweep) {
        double largest = 0.0;
        for (Index k = 0; k < columns; ++k) {
            for (Index l = k + 1; l < columns; ++l) {
                const double angle = bestAngle(variables, columns, k, l, gamma, loadings);
                const double cosine = std::cos(angle);
                turnColumns(variables, columns, k, l, cosine, std::sin(angle), loadings);
                largest = std::max(largest, 1.0 - cosine * cosine);
            }
        }
        if (largest < smallestChange) return;
    }
}

ErrorCode ObliqueRotation::allocate(int p, int requested) {
    const Index room = factorRoom(requested);
    const Index variables = p;
    const ErrorCode code =
        correlations.allocate(room * room); // the largest: when it fails the rest is not tried
    if (code != success) return code;
    return structure.allocate(variables * room) | pattern.allocate(variables * room);
}

ErrorCode rotateOblique(int p, int factors, double gamma, const double* loadings, ObliqueRotation& rotation) {
    const Index variables = p;
    const Index columns = factors;
    AxisWork work;
    ErrorCode code = work.allocate(variables, columns);
    if (code != success) return code;
    for (Index k = 0; k < columns; ++k) work.axes[k * (columns + 1)] = 1.0;
    std::copy_n(loadings, variables * columns, rotation.structure.data());
    for (int round = 0; round < mostSweeps; ++round) {
        double change = 0.0;
        for (Index k = 0; k < columns; ++k) {
            code = improveAxis(p, factors, k, gamma, loadings, work, rotation.structure.data(), change);
            if (code != success) return code;
        }
        if (change < smallestChange) break;
    }
    for (Index k = 0; k < columns; ++k) {
        for (Index l = 0; l < columns; ++l) {
            double sum = 0.0;
            for (Index a = 0; a < columns; ++a) {
                sum += work.axes[a * columns + k] * work.axes[a * columns + l];
            }
            rotation.correlations[k * columns + l] = sum;
        }
    }
    return success;
}

ErrorCode findPattern(int p, int factors, ObliqueRotation& rotation) {
    const Index columns = factors;
    Block<double> copy, inverse;
    ErrorCode code = copy.allocate(columns * columns) | inverse.allocate(columns * columns);
    if (code != success) return code;
    std::copy_n(rotation.correlations.data(), columns * columns, copy.data());
    double determinant = 0.0;
    code = MatrixInverse(factors, factors, copy.data(), inverse.data(), determinant);
    if (code != success) return code;
    for (Index k = 0; k < columns; ++k) {
        const double inflation = inverse[k * (columns + 1)];
        if (!(inflation > 0.0 && inflation < greatestInflation)) return singularMatrix;
    }
    multiply(p, factors, factors, rotation.structure.data(), inverse.data(), rotation.pattern.data());
    return success;
}
