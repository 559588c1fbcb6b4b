#include "analysis/multivariate/factor/factor_rotation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/product.h"

namespace {

constexpr double smallestChange = 1e-5;
constexpr double leastSine = 1e-12;
constexpr int mostSweeps = 10000;
// Of the diagonal of the inverse factor correlations: a factor that the others explain.
constexpr double greatestInflation = 1e6;
// Of two different axes; beyond it they will not part again.
constexpr double greatestCosine = 1.0 - 1e-12;
// Where the oblique rotation stands between the fixed percentages of the driver.
constexpr int firstPercent = 40;
constexpr int lastPercent = 60;
using std::numbers::pi;

struct ColumnPair {
    const double* first;
    const double* second;
    Index count;
    Index step; // from an element to the next one
};

// The angle that turns two columns to the greatest criterion.
double bestAngle(const ColumnPair& pair, double gamma) {
    double a = 0.0, b = 0.0, c = 0.0, d = 0.0;
    for (Index j = 0; j < pair.count; ++j) {
        const double x = pair.first[j * pair.step];
        const double y = pair.second[j * pair.step];
        const double u = x * x - y * y;
        const double w = x * y;
        a += u;
        b += w;
        c += u * u - 4.0 * w * w;
        d += u * w;
    }
    const double count = static_cast<double>(pair.count);
    const double numerator = 4.0 * count * d - 4.0 * gamma * a * b;
    const double denominator = count * c - gamma * (a + 2.0 * b) * (a - 2.0 * b);
    double angle = std::atan(numerator / denominator);
    if (denominator < 0.0) angle += numerator < 0.0 ? -pi : pi;
    return std::isnan(angle) ? 0.0 : angle / 4.0;
}

// The same, and none where the sums that it is made of are nothing but rounding: a criterion that is as good
// at every angle, or a column pair that is where it should be.
double exactAngle(const ColumnPair& pair, double gamma) {
    double a = 0.0, b = 0.0, c = 0.0, d = 0.0;
    double squares = 0.0, fourths = 0.0; // that the terms are not above
    for (Index j = 0; j < pair.count; ++j) {
        const double x = pair.first[j * pair.step];
        const double y = pair.second[j * pair.step];
        const double u = (x - y) * (x + y);
        const double w = x * y;
        a += u;
        b += w;
        c += u * u - 4.0 * w * w;
        d += u * w;
        const double square = x * x + y * y;
        squares += square;
        fourths += square * square;
    }
    const double count = static_cast<double>(pair.count);
    const double numerator = 4.0 * (count * d - gamma * a * b);
    const double denominator = count * c - gamma * (a + 2.0 * b) * (a - 2.0 * b);
    const double rounding = (count + 8.0) * std::numeric_limits<double>::epsilon() *
                            (count * fourths + gamma * squares * squares);
    if (std::fabs(numerator) <= rounding && denominator >= -rounding) return 0.0;
    const double angle = std::atan2(numerator, denominator);
    return std::isnan(angle) ? 0.0 : angle / 4.0;
}

// What turns a pair of columns, and what a sweep ends by: the size of its angles.
struct TurnRule {
    double (*angle)(const ColumnPair& pair, double gamma);
    double (*size)(double cosine, double sine);
    double leastSize;
};

constexpr TurnRule classicTurns = {
    .angle = bestAngle,
    .size = [](double cosine, double) { return 1.0 - cosine * cosine; },
    .leastSize = smallestChange,
};

constexpr TurnRule textbookTurns = {
    .angle = exactAngle,
    .size = [](double, double sine) { return std::fabs(sine); },
    .leastSize = leastSine,
};

void turnColumns(Index count, double cosine, double sine, double* __restrict column,
                 double* __restrict other) {
    for (Index j = 0; j < count; ++j) {
        const double x = column[j];
        const double y = other[j];
        column[j] = cosine * x + sine * y;
        other[j] = cosine * y - sine * x;
    }
}

void transpose(const Matrix& source, Matrix& target) {
    for (Index j = 0; j < source.rows(); ++j)
        for (Index k = 0; k < source.columns(); ++k) target(k, j) = source(j, k);
}

struct AxisWork {
    Matrix axes;           // factors x factors, axis k in column k
    Block<double> weights; // p
    Matrix criterion;      // factors x factors
    Matrix vectors;        // factors x factors
    Block<double> values;  // factors

    [[nodiscard]] ErrorCode allocate(Index p, Index factors) {
        return axes.allocate(factors, factors) | weights.allocate(p) | criterion.allocate(factors, factors) |
               vectors.allocate(factors, factors) | values.allocate(factors);
    }
};

// The squared projections of each variable on all axes but k, centred by gamma.
void findWeights(Index k, double gamma, const Matrix& structure, Block<double>& weights) {
    double total = 0.0;
    for (Index j = 0; j < structure.rows(); ++j) {
        const double* row = structure.row(j);
        double sum = 0.0;
        for (Index l = 0; l < structure.columns(); ++l) sum += row[l] * row[l];
        weights[j] = sum - row[k] * row[k];
        total += weights[j];
    }
    const double count = static_cast<double>(structure.rows());
    for (double& weight : weights) weight -= gamma * total / count;
}

// The lower triangle of out (factors x factors) = A' diag(weights) A, all that SymmetricEigen reads.
void weightedProducts(const Matrix& a, const Block<double>& weights, Matrix& out) {
    out.fill(0.0);
    for (Index j = 0; j < a.rows(); ++j) {
        const double* row = a.row(j);
        for (Index k = 0; k < a.columns(); ++k) {
            const double product = row[k] * weights[j];
            double* sums = out.row(k);
            for (Index l = 0; l <= k; ++l) sums[l] += product * row[l];
        }
    }
}

// Replaces axis k by the last eigenvector. Returns the largest change of an element.
double replaceAxis(Index k, AxisWork& work) {
    const Index factors = work.axes.columns();
    double inner = 0.0;
    for (Index a = 0; a < factors; ++a) inner += work.vectors(a, factors - 1) * work.axes(a, k);
    const double sign = inner < 0.0 ? -1.0 : 1.0;
    double change = 0.0;
    for (Index a = 0; a < factors; ++a) {
        const double element = sign * work.vectors(a, factors - 1);
        change = std::max(change, std::fabs(element - work.axes(a, k)));
        work.axes(a, k) = element;
    }
    return change;
}

// Finds axis k anew with the others as they are; raises `change` to the largest one of an element. Returns
// success or outOfMemory.
ErrorCode improveAxis(Index k, double gamma, const Matrix& loadings, AxisWork& work, Matrix& structure,
                      double& change) {
    findWeights(k, gamma, structure, work.weights);
    weightedProducts(loadings, work.weights, work.criterion);
    const ErrorCode code = SymmetricEigen(work.vectors, work.values, work.criterion);
    if (code != success) return code;
    change = std::max(change, replaceAxis(k, work));
    for (Index j = 0; j < loadings.rows(); ++j) {
        const double* row = loadings.row(j);
        double sum = 0.0;
        for (Index a = 0; a < loadings.columns(); ++a) sum += row[a] * work.axes(a, k);
        structure(j, k) = sum;
    }
    return success;
}

// Fills the inner products of the axes. Returns success, or singularMatrix when two fell together.
ErrorCode correlateAxes(const Matrix& axes, Matrix& correlations) {
    ErrorCode code = success;
    for (Index k = 0; k < axes.columns(); ++k) {
        for (Index l = 0; l < axes.columns(); ++l) {
            double sum = 0.0;
            for (Index a = 0; a < axes.rows(); ++a) sum += axes(a, k) * axes(a, l);
            correlations(k, l) = sum;
            if (k != l && std::fabs(sum) > greatestCosine) code = singularMatrix;
        }
    }
    return code;
}

// The logarithm of the change falls about evenly from round to round.
int percentAfter(double change, double leastChange) {
    const double done = std::clamp(std::log(change) / std::log(leastChange), 0.0, 1.0);
    return firstPercent + static_cast<int>(done * (lastPercent - firstPercent));
}

// The inverse of the inner products of the axes. Returns success, outOfMemory, or singularMatrix.
ErrorCode invertInnerProducts(const Matrix& products, Matrix& inverse) {
    const Index factors = products.rows();
    Matrix copy;
    ErrorCode code = copy.allocate(factors, factors) | inverse.allocate(factors, factors);
    if (code != success) return code;
    std::copy(products.begin(), products.end(), copy.begin());
    double determinant = 0.0;
    code = MatrixInverse(copy, inverse, determinant);
    if (code != success) return code;
    for (Index k = 0; k < factors; ++k) {
        const double inflation = inverse(k, k);
        if (!(inflation > 0.0 && inflation < greatestInflation)) return singularMatrix;
    }
    return success;
}

} // namespace

ErrorCode rotateOrthogonal(const Numerics& numerics, double gamma, Matrix& loadings, const Stage& stage) {
    const TurnRule& turns = numerics.textbook ? textbookTurns : classicTurns;
    const Index count = loadings.rows();
    const Index factors = loadings.columns();
    Matrix columns;       // in rows
    Block<Index> changed; // the visit that last changed a column
    ErrorCode code = columns.allocate(factors, count) | changed.allocate(factors);
    if (code != success) return code;
    transpose(loadings, columns);
    const Index visitsOfSweep = factors * (factors - 1) / 2;
    Index visit = visitsOfSweep; // all columns count as new in the first sweep
    std::fill(changed.begin(), changed.end(), visit);
    for (int sweep = 0; sweep < mostSweeps; ++sweep) {
        double largest = 0.0;
        for (Index k = 0; k < factors; ++k) {
            code = stage.advance(sweep);
            if (code != success) return code;
            for (Index l = k + 1; l < factors; ++l) {
                // A pair of which nothing changed since its last visit was left as it was then, too.
                const Index lastVisit = ++visit - visitsOfSweep;
                if (changed[k] < lastVisit && changed[l] < lastVisit) continue;
                const double angle = turns.angle({columns.row(k), columns.row(l), count, 1}, gamma);
                const double cosine = std::cos(angle);
                const double sine = std::sin(angle);
                turnColumns(count, cosine, sine, columns.row(k), columns.row(l));
                if (angle != 0.0) changed[k] = changed[l] = visit;
                largest = std::max(largest, turns.size(cosine, sine));
            }
        }
        if (largest < turns.leastSize) break;
    }
    transpose(columns, loadings);
    return success;
}

double largestTurnLeft(double gamma, const Matrix& loadings) {
    const Index factors = loadings.columns();
    double largest = 0.0;
    for (Index k = 0; k < factors; ++k) {
        for (Index l = k + 1; l < factors; ++l) {
            const ColumnPair pair = {loadings.data() + k, loadings.data() + l, loadings.rows(), factors};
            largest = std::max(largest, std::fabs(std::sin(exactAngle(pair, gamma))));
        }
    }
    return largest;
}

ErrorCode ObliqueRotation::allocate(Index p, Index factors) {
    // The largest: when it fails the rest is not tried.
    const ErrorCode code = correlations.allocate(factors, factors);
    if (code != success) return code;
    return structure.allocate(p, factors) | pattern.allocate(p, factors);
}

ErrorCode rotateOblique(Screens& screens, const Numerics& numerics, double gamma, const Matrix& loadings,
                        ObliqueRotation& rotation) {
    const double leastChange =
        numerics.iterationTolerance > 0.0 ? numerics.iterationTolerance : smallestChange;
    const Index factors = loadings.columns();
    AxisWork work;
    ErrorCode code = work.allocate(loadings.rows(), factors);
    if (code != success) return code;
    for (Index k = 0; k < factors; ++k) work.axes(k, k) = 1.0;
    std::copy(loadings.begin(), loadings.end(), rotation.structure.begin());
    int percent = firstPercent;
    for (int round = 0; round < mostSweeps; ++round) {
        double change = 0.0;
        for (Index k = 0; k < factors; ++k) {
            code = improveAxis(k, gamma, loadings, work, rotation.structure, change);
            if (code != success) return code;
        }
        code = correlateAxes(work.axes, rotation.correlations);
        if (code != success) return code;
        percent = std::max(percent, percentAfter(change, leastChange));
        code = screens.setProgress(percent);
        if (code != success) return code;
        if (change < leastChange) break;
    }
    return success;
}

ErrorCode findPattern(ObliqueRotation& rotation) {
    Matrix inverse;
    const ErrorCode code = invertInnerProducts(rotation.correlations, inverse);
    if (code != success) return code;
    multiply(rotation.structure, inverse, rotation.pattern);
    return success;
}

ErrorCode findPrimaryFactors(ObliqueRotation& rotation) {
    Matrix inverse;
    const ErrorCode code = invertInnerProducts(rotation.correlations, inverse);
    if (code != success) return code;
    const Index factors = inverse.rows();
    for (Index k = 0; k < factors; ++k) {
        const double root = std::sqrt(inverse(k, k)); // 1 / D
        for (Index j = 0; j < rotation.pattern.rows(); ++j) {
            rotation.pattern(j, k) = rotation.structure(j, k) * root;
        }
        for (Index l = 0; l < k; ++l) {
            const double correlation = inverse(k, l) / (root * std::sqrt(inverse(l, l)));
            rotation.correlations(k, l) = rotation.correlations(l, k) = correlation;
        }
        rotation.correlations(k, k) = 1.0;
    }
    multiply(rotation.pattern, rotation.correlations, rotation.structure);
    return success;
}
