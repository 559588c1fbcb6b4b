#include "analysis/multivariate/canonical/canonical_variates.h"

#include <algorithm>
#include <cmath>

#include "data/moments/working_moments.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/product.h"

namespace {

constexpr double leastEigenvalue = 1e-10;

// The part of a matrix that begins at place (row, column).
void copyPart(const Matrix& matrix, Index row, Index column, Matrix& part) {
    for (Index i = 0; i < part.rows(); ++i) {
        std::copy_n(matrix.row(row + i) + column, part.columns(), part.row(i));
    }
}

// out = a' b.
void multiplyTransposed(const Matrix& a, const Matrix& b, Matrix& out) {
    out.fill(0.0);
    for (Index k = 0; k < a.rows(); ++k) {
        const double* left = a.row(k);
        const double* right = b.row(k);
        for (Index i = 0; i < out.rows(); ++i) {
            const double factor = left[i];
            double* sums = out.row(i);
            for (Index j = 0; j < out.columns(); ++j) sums[j] += factor * right[j];
        }
    }
}

// W with W' R22 W = 1; a column of zeros from the first eigenvalue on that vanishes.
ErrorCode findWhitening(CanonicalVariates& variates) {
    const ErrorCode code = SymmetricEigen(variates.vectors, variates.squares, variates.r22);
    if (code != success) return code;

    const Index n = variates.q2;
    for (Index k = 0; k < n && variates.squares[k] >= leastEigenvalue; ++k) {
        const double root = std::sqrt(variates.squares[k]);
        for (Index i = 0; i < n; ++i) variates.whitening(i, k) = variates.vectors(i, k) / root;
    }
    return success;
}

// Squared canonical correlations: the eigenvalues of W' R21 R11^-1 R12 W, its eigenvectors U into vectors.
ErrorCode findCorrelations(CanonicalVariates& variates) {
    multiply(variates.explained, variates.whitening, variates.product);
    multiplyTransposed(variates.whitening, variates.product, variates.explained);
    const ErrorCode code = SymmetricEigen(variates.vectors, variates.squares, variates.explained);
    if (code != success) return code;

    for (Index k = 0; k < variates.pairs; ++k) {
        variates.squares[k] = std::clamp(variates.squares[k], 0.0, 1.0);
        variates.correlations[k] = std::sqrt(variates.squares[k]);
    }
    return success;
}

// Weights of variates with variance 1: b = W U for the purpose variables, a = R11^-1 R12 b / rho for the
// others.
void findWeights(CanonicalVariates& variates) {
    multiply(variates.whitening, variates.vectors, variates.product);
    copyPart(variates.product, 0, 0, variates.purposeWeights);
    multiply(variates.regression, variates.purposeWeights, variates.explanatoryWeights);
    for (Index i = 0; i < variates.q1; ++i) {
        double* weights = variates.explanatoryWeights.row(i);
        for (Index k = 0; k < variates.pairs; ++k) {
            const double correlation = variates.correlations[k];
            weights[k] = correlation == 0.0 ? 0.0 : weights[k] / correlation;
        }
    }
}

// The share of a group's variance that the other group's variates explain, rows of `structure` being
// variables; their total behind the last one.
void findRedundancy(const Block<double>& squares, const Matrix& structure, double* redundancy) {
    const Index m = structure.columns();
    const double variables = static_cast<double>(structure.rows());
    for (Index k = 0; k < m; ++k) {
        double sum = 0.0;
        for (Index i = 0; i < structure.rows(); ++i) sum += structure(i, k) * structure(i, k);
        redundancy[k] = squares[k] * sum / variables;
        redundancy[m] += redundancy[k];
    }
}

void summarise(CanonicalVariates& variates) {
    const double m = static_cast<double>(variates.pairs);
    double sum = 0.0, product = 1.0, inverses = 0.0;
    for (Index k = 0; k < variates.pairs; ++k) {
        const double remainder = 1.0 - variates.squares[k];
        sum += variates.squares[k];
        product *= remainder;
        inverses += 1.0 / remainder;
    }
    variates.meanSquare = sum / m;
    variates.generalisedSquare = 1.0 - product;
    variates.harmonicSquare = 1.0 - m / inverses;
}

} // namespace

ErrorCode CanonicalVariates::allocate(Index explanatory, Index purpose) {
    q1 = explanatory;
    q2 = purpose;
    pairs = std::min(q1, q2);
    const Index m = pairs;
    return moments.allocate(q1 + q2) | r11.allocate(q1, q1) | r22.allocate(q2, q2) | r12.allocate(q1, q2) |
           factors.allocate(q1, q1) | inverse.allocate(q1, q1) | regression.allocate(q1, q2) |
           explained.allocate(q2, q2) | whitening.allocate(q2, q2) | vectors.allocate(q2, q2) |
           product.allocate(q2, q2) | squares.allocate(q2) | correlations.allocate(m) |
           explanatoryWeights.allocate(q1, m) | purposeWeights.allocate(q2, m) |
           explanatoryStructure.allocate(q1, m) | purposeStructure.allocate(q2, m) |
           redundancy.allocate(2, m + 1) | tests.allocate(m);
}

ErrorCode findCanonicalVariates(Screens& screens, const Numerics& numerics, const DataMatrix& data,
                                CanonicalVariates& variates) {
    const Index q1 = variates.q1;
    const MomentMatrices& moments = variates.moments;
    ErrorCode code = findMoments(numerics, data, variates.moments);
    if (code != success) return code;
    if (numerics.anyConstant(moments)) return illegalData;
    code = screens.setProgress(15);
    if (code != success) return code;

    copyPart(moments.correlation, 0, 0, variates.r11);
    copyPart(moments.correlation, q1, q1, variates.r22);
    copyPart(moments.correlation, 0, q1, variates.r12);
    code = screens.setProgress(20);
    if (code == success) code = invertRegular(variates.r11, variates.factors, variates.inverse);
    if (code == success) code = screens.setProgress(30);
    if (code != success) return code;

    multiply(variates.inverse, variates.r12, variates.regression);
    multiplyTransposed(variates.r12, variates.regression, variates.explained);
    code = findWhitening(variates);
    if (code == success) code = findCorrelations(variates);
    if (code == success) code = screens.setProgress(50);
    if (code != success) return code;

    findWeights(variates);
    multiply(variates.r11, variates.explanatoryWeights, variates.explanatoryStructure);
    multiply(variates.r22, variates.purposeWeights, variates.purposeStructure);
    code = screens.setProgress(70);
    if (code != success) return code;

    findRedundancy(variates.squares, variates.explanatoryStructure, variates.redundancy.row(0));
    findRedundancy(variates.squares, variates.purposeStructure, variates.redundancy.row(1));
    summarise(variates);
    code = screens.setProgress(85);
    if (code != success) return code;

    findCanonicalTests(numerics, {data.samples, q1, variates.q2}, variates.squares, variates.tests);
    return screens.setProgress(100);
}
