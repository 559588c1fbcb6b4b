#include "analysis/multivariate/discriminant/discriminant_function.h"

#include <algorithm>
#include <cmath>

#include "data/categories.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/product.h"

namespace {

// out (k x k) = scale times the rows and columns of the selected variables, in their order.
void takeSelected(const VariableSelection& selection, const Matrix& matrix, double scale, Matrix& out) {
    for (Index i = 0; i < selection.selected; ++i) {
        const double* row = matrix.row(selection.order[i]);
        for (Index j = 0; j < selection.selected; ++j) out(i, j) = scale * row[selection.order[j]];
    }
}

// The mean of group g in the i-th selected variable.
double groupMean(const GroupStatistics& statistics, const VariableSelection& selection, Index g, Index i) {
    return statistics.groupMeans(g, selection.order[i]);
}

void findHotelling(const Numerics& numerics, const GroupStatistics& statistics, Index variables,
                   DiscriminantFunctions& functions) {
    const double n1 = statistics.counts[0];
    const double n2 = statistics.counts[1];
    const double n = static_cast<double>(statistics.samples);
    const double k = static_cast<double>(variables);
    functions.hotellingFreedom[0] = k;
    functions.hotellingFreedom[1] = n - k - 1.0;
    const double t2 = n1 * n2 / (n1 + n2) * functions.mahalanobis;
    functions.hotellingF = variables == 0 ? 0.0 : (n - k - 1.0) / ((n - 2.0) * k) * t2;
    numerics.fTails(1, &functions.hotellingF, &functions.hotellingFreedom[0], &functions.hotellingFreedom[1],
                    &functions.hotellingProbability);
}

struct CanonicalWork {
    Matrix within, vectors, root, between, product; // k x k
    Block<double> units;                            // k: the roots of the diagonal of W
    Block<double> weights;                          // k

    [[nodiscard]] ErrorCode allocate(Index k) {
        ErrorCode code = units.allocate(k) | weights.allocate(k);
        for (Matrix* matrix : {&within, &vectors, &root, &between, &product}) code |= matrix->allocate(k, k);
        return code;
    }
};

// Divides the rows and the columns by the units.
void expressIn(const Block<double>& units, Matrix& matrix) {
    for (Index i = 0; i < matrix.rows(); ++i) {
        double* row = matrix.row(i);
        for (Index j = 0; j < matrix.columns(); ++j) row[j] = row[j] / units[i] / units[j];
    }
}

// Fills root with W^(-1/2), and vectors and eigenvalues with those of W^-1/2 (T - W) W^-1/2, with the
// variables in the units that give W a diagonal of 1: in those of the data the eigenvalues of W that belong
// to a variable of small numbers would be lost beside the others.
ErrorCode decompose(const GroupStatistics& statistics, const VariableSelection& selection,
                    CanonicalWork& work, Block<double>& eigenvalues) {
    takeSelected(selection, statistics.within, 1.0, work.within);
    takeSelected(selection, statistics.total, 1.0, work.between);
    std::transform(work.between.begin(), work.between.end(), work.within.begin(), work.between.begin(),
                   [](double total, double within) { return total - within; });
    for (Index i = 0; i < selection.selected; ++i) {
        if (!(work.within(i, i) > 0.0)) return singularMatrix;
        work.units[i] = std::sqrt(work.within(i, i));
    }
    expressIn(work.units, work.within);
    expressIn(work.units, work.between);
    const ErrorCode code = SymmetricEigen(work.vectors, work.weights, work.within);
    if (code != success) return code;
    for (double& value : work.weights) {
        if (!(value > 0.0)) return singularMatrix;
        value = 1.0 / std::sqrt(value);
    }
    composeSymmetric(work.vectors, work.weights.data(), work.root);
    multiply(work.root, work.root, work.product); // the inverse of W
    if (isSingular(work.within, work.product)) return singularMatrix;
    multiply(work.root, work.between, work.product);
    multiply(work.product, work.root, work.between);
    return SymmetricEigen(work.vectors, eigenvalues, work.between);
}

// Bartlett's tests of the roots (Bartlett 1947).
void testRoots(const Numerics& numerics, const GroupStatistics& statistics, Index variables,
               DiscriminantFunctions& functions) {
    const Index dimensions = functions.dimensions;
    const double k = static_cast<double>(variables);
    const double samples = static_cast<double>(statistics.samples);
    const double groups = static_cast<double>(statistics.groups);
    const double factor = samples - 1.0 - (k + groups) / 2.0;
    double sum = 0.0;
    for (Index i = dimensions; i-- > 0;) {
        const double before = static_cast<double>(i);
        sum += std::log(1.0 + functions.eigenvalues[i]);
        functions.chiSquare[i] = factor * sum;
        functions.freedom[i] = (k - before) * (groups - 1.0 - before);
    }
    numerics.chiSquareTails(dimensions, functions.chiSquare.data(), functions.freedom.data(),
                            functions.probability.data());
}

// Constants that put the total mean at 0, and the groups' mean scores.
void placeCentroids(const GroupStatistics& statistics, const VariableSelection& selection,
                    DiscriminantFunctions& functions) {
    const Index k = selection.selected;
    for (Index v = 0; v < functions.dimensions; ++v) {
        double constant = 0.0;
        for (Index i = 0; i < k; ++i) {
            constant -= functions.coefficients(i, v) * statistics.totalMeans[selection.order[i]];
        }
        functions.constants[v] = constant;
        for (Index g = 0; g < statistics.groups; ++g) {
            double score = constant;
            for (Index i = 0; i < k; ++i) {
                score += functions.coefficients(i, v) * groupMean(statistics, selection, g, i);
            }
            functions.centroids(g, v) = score;
        }
    }
}

double squaredDistance(const double* score, const double* centroid, Index vectors) {
    double distance = 0.0;
    for (Index v = 0; v < vectors; ++v) {
        const double difference = score[v] - centroid[v];
        distance += difference * difference;
    }
    return distance;
}

std::int32_t nearestCentroid(const double* score, Index vectors, const Matrix& centroids) {
    std::int32_t nearest = 0;
    double least = 0.0;
    for (std::int32_t g = 0; g < centroids.rows(); ++g) {
        const double distance = squaredDistance(score, centroids.row(g), vectors);
        if (g > 0 && !(distance < least)) continue;
        least = distance;
        nearest = g;
    }
    return nearest;
}

} // namespace

ErrorCode DiscriminantFunctions::allocate(const GroupStatistics& statistics,
                                          const VariableSelection& selection) {
    const Index g = statistics.groups;
    const Index n = statistics.rows;
    const Index k = selection.selected;
    dimensions = g == 2 ? 1 : std::min(g - 1, k);
    return coefficients.allocate(k, dimensions) | constants.allocate(dimensions) |
           centroids.allocate(g, dimensions) | scores.allocate(n, dimensions) | assigned.allocate(n) |
           crossed.allocate(g * g) | standardized.allocate(k, dimensions) | eigenvalues.allocate(k) |
           chiSquare.allocate(dimensions) | probability.allocate(dimensions) | freedom.allocate(dimensions);
}

ErrorCode findFisher(const Numerics& numerics, const GroupStatistics& statistics,
                     const VariableSelection& selection, DiscriminantFunctions& functions) {
    const Index k = selection.selected;
    Matrix pooled, scratch, inverse, differences;
    ErrorCode code =
        pooled.allocate(k, k) | scratch.allocate(k, k) | inverse.allocate(k, k) | differences.allocate(k, 1);
    if (code != success) return code;
    takeSelected(selection, statistics.within, 1.0 / statistics.withinFreedom(), pooled);
    code = invertRegular(pooled, scratch, inverse);
    if (code != success) return code;

    for (Index i = 0; i < k; ++i) {
        differences(i, 0) = groupMean(statistics, selection, 0, i) - groupMean(statistics, selection, 1, i);
    }
    multiply(inverse, differences, functions.coefficients);
    for (Index i = 0; i < k; ++i) {
        const double coefficient = functions.coefficients(i, 0);
        functions.constants[0] -=
            0.5 * coefficient *
            (groupMean(statistics, selection, 0, i) + groupMean(statistics, selection, 1, i));
        functions.mahalanobis += coefficient * differences(i, 0);
    }
    functions.errorRate = 0.5 * numerics.normalTwoSidedTail(std::sqrt(functions.mahalanobis) / 2.0);
    functions.centroids(0, 0) = functions.mahalanobis / 2.0;
    functions.centroids(1, 0) = -functions.mahalanobis / 2.0;
    functions.vectors = functions.classifying = 1;
    findHotelling(numerics, statistics, k, functions);
    return success;
}

ErrorCode findCanonical(const Numerics& numerics, const GroupStatistics& statistics,
                        const VariableSelection& selection, double alpha, DiscriminantFunctions& functions) {
    const Index k = selection.selected;
    CanonicalWork work;
    ErrorCode code = work.allocate(k);
    if (code != success) return code;
    code = decompose(statistics, selection, work, functions.eigenvalues);
    if (code != success) return code;
    testRoots(numerics, statistics, k, functions);
    functions.vectors = significantRoots(numerics, functions, alpha);
    functions.classifying = numerics.textbook ? functions.dimensions : functions.vectors;

    // A variable in its unit has a pooled variance of 1 / freedom; that of the scores is to be 1.
    const double scale = std::sqrt(statistics.withinFreedom());
    multiply(work.root, work.vectors, work.product);
    for (Index i = 0; i < k; ++i) {
        for (Index v = 0; v < functions.dimensions; ++v) {
            functions.standardized(i, v) = work.product(i, v);
            functions.coefficients(i, v) = work.product(i, v) * scale / work.units[i];
        }
    }
    placeCentroids(statistics, selection, functions);
    return success;
}

void classifySamples(const DataMatrix& data, const GroupStatistics& statistics,
                     const VariableSelection& selection, DiscriminantFunctions& functions) {
    const Index dimensions = functions.dimensions;
    const Index groups = statistics.groups;
    for (Index s = 0; s < data.rows(); ++s) {
        const double* x = data.row(s);
        double* score = functions.scores.row(s);
        std::copy_n(functions.constants.begin(), dimensions, score);
        for (Index j = 0; j < selection.selected; ++j) {
            const double value = x[selection.order[j]];
            const double* coefficients = functions.coefficients.row(j);
            for (Index v = 0; v < dimensions; ++v) score[v] += coefficients[v] * value;
        }
        functions.assigned[s] = groups == 2
                                    ? (score[0] >= 0.0 ? 0 : 1)
                                    : nearestCentroid(score, functions.classifying, functions.centroids);
        const Index prior = categoryOf(data, s, statistics.variables);
        ++functions.crossed[prior * groups + functions.assigned[s]];
    }
}

Index significantRoots(const Numerics& numerics, const DiscriminantFunctions& functions, double alpha) {
    Index roots = 0;
    for (; roots < functions.dimensions; ++roots) {
        double tail = 0.0;
        numerics.chiSquareTails(1, &functions.chiSquare[roots], &functions.freedom[roots], &tail);
        if (!(tail < alpha)) break;
    }
    return std::max(roots, std::min(Index{1}, functions.dimensions));
}

double squaredGroupDistance(const DiscriminantFunctions& functions, Index sample, Index group) {
    const double distance =
        squaredDistance(functions.scores.row(sample), functions.centroids.row(group), functions.classifying);
    // The variance of Fisher's score is the distance of the two groups.
    return functions.centroids.rows() == 2 ? distance / functions.mahalanobis : distance;
}

bool doAllClassifyElsewhere(const DiscriminantFunctions& functions) {
    if (functions.classifying == functions.dimensions) return false;
    for (Index s = 0; s < functions.scores.rows(); ++s) {
        const double* score = functions.scores.row(s);
        if (nearestCentroid(score, functions.dimensions, functions.centroids) != functions.assigned[s])
            return true;
    }
    return false;
}
