#include "analysis/multivariate/discriminant/discriminant_function.h"

#include <algorithm>
#include <cmath>

#include "data/categories.h"
#include "numeric/distributions.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/product.h"

namespace {

// out (k x k) = scale times the rows and columns of the selected variables, in their order.
void takeSelected(const VariableSelection& selection, const Block<double>& matrix, double scale,
                  double* out) {
    const Index q = selection.order.size();
    for (int i = 0; i < selection.selected; ++i) {
        const double* row = matrix.data() + Index{selection.order[i]} * q;
        for (int j = 0; j < selection.selected; ++j) {
            *out++ = scale * row[selection.order[j]];
        }
    }
}

// The mean of group g in the i-th selected variable.
double groupMean(const GroupStatistics& statistics, const VariableSelection& selection, Index g, Index i) {
    return statistics.groupMeans[g * statistics.variables + selection.order[i]];
}

void findHotelling(const GroupStatistics& statistics, int variables, DiscriminantFunctions& functions) {
    const double n1 = statistics.counts[0];
    const double n2 = statistics.counts[1];
    const double n = statistics.samples;
    const double k = variables;
    functions.hotellingDegrees[0] = k;
    functions.hotellingDegrees[1] = n - k - 1.0;
    const double t2 = n1 * n2 / (n1 + n2) * functions.mahalanobis;
    functions.hotellingF = variables == 0 ? 0.0 : (n - k - 1.0) / ((n - 2.0) * k) * t2;
    FUpperProbability(1, &functions.hotellingF, &functions.hotellingDegrees[0],
                      &functions.hotellingDegrees[1], &functions.hotellingProbability);
}

struct CanonicalWork {
    Block<double> within, vectors, root, between, product; // k x k
    Block<double> weights;                                 // k

    ErrorCode allocate(Index k) {
        ErrorCode code = weights.allocate(k);
        for (Block<double>* matrix : {&within, &vectors, &root, &between, &product}) {
            code |= matrix->allocate(k * k);
        }
        return code;
    }
};

// Fills root with W^(-1/2) and vectors with the eigenvectors of W^-1/2 (T - W) W^-1/2.
ErrorCode decompose(const GroupStatistics& statistics, const VariableSelection& selection,
                    CanonicalWork& work, double* eigenvalues) {
    const int k = selection.selected;
    takeSelected(selection, statistics.within, 1.0, work.within.data());
    takeSelected(selection, statistics.total, 1.0, work.between.data());
    for (Index i = 0; i < work.between.size(); ++i) work.between[i] -= work.within[i];
    const ErrorCode code = SymmetricEigen(k, k, work.vectors.data(), work.weights.data(), work.within.data());
    if (code != success) return code;
    for (double& value : work.weights) {
        if (!(value > 0.0)) return singularMatrix;
        value = 1.0 / std::sqrt(value);
    }
    composeSymmetric(k, work.vectors.data(), work.weights.data(), work.root.data());
    multiply(k, k, k, work.root.data(), work.root.data(), work.product.data()); // the inverse of W
    if (isSingular(k, k, work.within.data(), k, work.product.data())) return singularMatrix;
    multiply(k, k, k, work.root.data(), work.between.data(), work.product.data());
    multiply(k, k, k, work.product.data(), work.root.data(), work.between.data());
    return SymmetricEigen(k, k, work.vectors.data(), eigenvalues, work.between.data());
}

// Bartlett's tests of the roots (Bartlett 1947), and how many of the first ones are significant.
void testRoots(const GroupStatistics& statistics, int variables, double alpha,
               DiscriminantFunctions& functions) {
    const double k = variables;
    const double groups = statistics.groups;
    const double factor = statistics.samples - 1.0 - (k + groups) / 2.0;
    double sum = 0.0;
    for (int i = functions.dimensions; i-- > 0;) {
        const Index at = i;
        sum += std::log(1.0 + functions.eigenvalues[at]);
        functions.chiSquare[at] = factor * sum;
        functions.degrees[at] = (k - i) * (groups - 1.0 - i);
    }
    const int dimensions = functions.dimensions;
    ChiSquareUpperProbability(dimensions, functions.chiSquare.data(), functions.degrees.data(),
                              functions.probability.data());
    const double* first = functions.probability.data();
    const double* end = std::find_if_not(first, first + dimensions,
                                         [alpha](double probability) { return probability < alpha; });
    functions.vectors = std::clamp(static_cast<int>(end - first), std::min(1, dimensions), dimensions);
}

// Constants that put the total mean at 0, and the groups' mean scores.
void placeCentroids(const GroupStatistics& statistics, const VariableSelection& selection,
                    DiscriminantFunctions& functions) {
    const Index vectors = functions.vectors;
    const Index k = selection.selected;
    for (Index v = 0; v < vectors; ++v) {
        double constant = 0.0;
        for (Index i = 0; i < k; ++i) {
            constant -= functions.coefficients[i * vectors + v] * statistics.totalMeans[selection.order[i]];
        }
        functions.constants[v] = constant;
        for (Index g = 0; g < statistics.counts.size(); ++g) {
            double score = constant;
            for (Index i = 0; i < k; ++i) {
                score += functions.coefficients[i * vectors + v] * groupMean(statistics, selection, g, i);
            }
            functions.centroids[g * vectors + v] = score;
        }
    }
}

std::int32_t nearestCentroid(const double* score, Index vectors, const Block<double>& centroids,
                             Index groups) {
    Index nearest = 0;
    double least = 0.0;
    for (Index g = 0; g < groups; ++g) {
        double distance = 0.0;
        for (Index v = 0; v < vectors; ++v) {
            const double difference = score[v] - centroids[g * vectors + v];
            distance += difference * difference;
        }
        if (g > 0 && !(distance < least)) continue;
        least = distance;
        nearest = g;
    }
    return static_cast<std::int32_t>(nearest);
}

} // namespace

ErrorCode DiscriminantFunctions::allocate(const GroupStatistics& statistics) {
    const Index g = statistics.groups;
    const Index q = statistics.variables;
    const Index n = statistics.samples;
    const Index most = std::min(g - 1, q);
    return coefficients.allocate(q * most) | constants.allocate(most) | centroids.allocate(g * most) |
           scores.allocate(n * most) | assigned.allocate(n) | crossed.allocate(g * g) |
           standardized.allocate(q * most) | eigenvalues.allocate(q) | chiSquare.allocate(most) |
           probability.allocate(most) | degrees.allocate(most);
}

ErrorCode findFisher(const GroupStatistics& statistics, const VariableSelection& selection,
                     DiscriminantFunctions& functions) {
    functions.dimensions = functions.vectors = 1;
    const int k = selection.selected;
    const Index count = k;
    Block<double> pooled, scratch, inverse, differences;
    ErrorCode code = pooled.allocate(count * count) | scratch.allocate(count * count) |
                     inverse.allocate(count * count) | differences.allocate(count);
    if (code != success) return code;
    takeSelected(selection, statistics.within, 1.0 / (statistics.samples - 2), pooled.data());
    code = invertRegular(k, pooled.data(), scratch.data(), inverse.data());
    if (code != success) return code;

    for (Index i = 0; i < count; ++i) {
        differences[i] = groupMean(statistics, selection, 0, i) - groupMean(statistics, selection, 1, i);
    }
    multiply(k, k, 1, inverse.data(), differences.data(), functions.coefficients.data());
    for (Index i = 0; i < count; ++i) {
        const double coefficient = functions.coefficients[i];
        functions.constants[0] -=
            0.5 * coefficient *
            (groupMean(statistics, selection, 0, i) + groupMean(statistics, selection, 1, i));
        functions.mahalanobis += coefficient * differences[i];
    }
    functions.errorRate =
        0.5 * ComplementaryErrorFunction(std::sqrt(functions.mahalanobis) / (2.0 * std::sqrt(2.0)));
    functions.centroids[0] = functions.mahalanobis / 2.0;
    functions.centroids[1] = -functions.mahalanobis / 2.0;
    findHotelling(statistics, k, functions);
    return success;
}

ErrorCode findCanonical(const GroupStatistics& statistics, const VariableSelection& selection, double alpha,
                        DiscriminantFunctions& functions) {
    const int k = selection.selected;
    const Index count = k;
    functions.dimensions = std::min(statistics.groups - 1, k);
    CanonicalWork work;
    ErrorCode code = work.allocate(count);
    if (code != success) return code;
    code = decompose(statistics, selection, work, functions.eigenvalues.data());
    if (code != success) return code;
    testRoots(statistics, k, alpha, functions);

    // The scale gives the scores a pooled variance of 1.
    const double within = statistics.samples - statistics.groups;
    multiply(k, k, k, work.root.data(), work.vectors.data(), work.product.data());
    const Index vectors = functions.vectors;
    for (Index i = 0; i < count; ++i) {
        const double deviation = std::sqrt(work.within[i * (count + 1)] / within);
        for (Index v = 0; v < vectors; ++v) {
            const double coefficient = work.product[i * count + v] * std::sqrt(within);
            functions.coefficients[i * vectors + v] = coefficient;
            functions.standardized[i * vectors + v] = coefficient * deviation;
        }
    }
    placeCentroids(statistics, selection, functions);
    return success;
}

void classifySamples(const DataMatrix& data, const GroupStatistics& statistics,
                     const VariableSelection& selection, DiscriminantFunctions& functions) {
    const Index vectors = functions.vectors;
    const Index groups = statistics.groups;
    for (std::int32_t s = 0; s < data.samples; ++s) {
        const Index i = s;
        const double* x = data.values.data() + i * data.variables;
        double* score = functions.scores.data() + i * vectors;
        std::copy_n(functions.constants.data(), vectors, score);
        for (Index j = 0; j < selection.selected; ++j) {
            const double value = x[selection.order[j]];
            for (Index v = 0; v < vectors; ++v) score[v] += functions.coefficients[j * vectors + v] * value;
        }
        functions.assigned[i] = groups == 2 ? (score[0] >= 0.0 ? 0 : 1)
                                            : nearestCentroid(score, vectors, functions.centroids, groups);
        const Index prior = categoryOf(data, s, statistics.variables);
        ++functions.crossed[prior * groups + functions.assigned[i]];
    }
}
