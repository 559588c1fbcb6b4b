#include "analysis/multivariate/canonical/canonical_variates.h"

#include <algorithm>
#include <cmath>

#include "numeric/distributions.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/product.h"

namespace {

constexpr double leastEigenvalue = 1e-10;

// rows x columns from place (row, column) of a p x p matrix.
void copyPart(const Block<double>& matrix, int p, int row, int column, int rows, int columns,
              Block<double>& part) {
    const double* source = matrix.data() + Index{row} * p + column;
    double* target = part.data();
    for (int i = 0; i < rows; ++i, source += p, target += columns) std::copy_n(source, columns, target);
}

// out (rows x columns) = a' b, a inner x rows.
void multiplyTransposed(int inner, int rows, int columns, const double* a, const double* b, double* out) {
    const Index height = rows;
    const Index width = columns;
    std::fill_n(out, height * width, 0.0);
    for (int k = 0; k < inner; ++k, a += height, b += width) {
        for (Index i = 0; i < height; ++i) {
            for (Index j = 0; j < width; ++j) out[i * width + j] += a[i] * b[j];
        }
    }
}

// W with W' R22 W = 1; a column of zeros from the first eigenvalue on that vanishes.
ErrorCode findWhitening(CanonicalVariates& variates) {
    const Index n = variates.q2;
    const ErrorCode code = SymmetricEigen(variates.q2, variates.q2, variates.vectors.data(),
                                          variates.squares.data(), variates.r22.data());
    if (code != success) return code;
    for (Index k = 0; k < n && variates.squares[k] >= leastEigenvalue; ++k) {
        const double root = std::sqrt(variates.squares[k]);
        for (Index i = 0; i < n; ++i) variates.whitening[i * n + k] = variates.vectors[i * n + k] / root;
    }
    return success;
}

// Squared canonical correlations: the eigenvalues of W' R21 R11^-1 R12 W, its eigenvectors U into vectors.
ErrorCode findCorrelations(CanonicalVariates& variates) {
    const int n = variates.q2;
    multiply(n, n, n, variates.explained.data(), variates.whitening.data(), variates.scratch.data());
    multiplyTransposed(n, n, n, variates.whitening.data(), variates.scratch.data(),
                       variates.explained.data());
    const ErrorCode code =
        SymmetricEigen(n, n, variates.vectors.data(), variates.squares.data(), variates.explained.data());
    if (code != success) return code;
    for (Index k = 0; k < variates.correlations.size(); ++k) {
        variates.squares[k] = std::clamp(variates.squares[k], 0.0, 1.0);
        variates.correlations[k] = std::sqrt(variates.squares[k]);
    }
    return success;
}

// Weights of variates with variance 1: b = W U for the purpose variables, a = R11^-1 R12 b / rho for the
// others.
void findWeights(CanonicalVariates& variates) {
    const Index n = variates.q2;
    const Index m = variates.correlations.size();
    multiply(variates.q2, variates.q2, variates.q2, variates.whitening.data(), variates.vectors.data(),
             variates.scratch.data());
    for (Index i = 0; i < n; ++i) std::copy_n(&variates.scratch[i * n], m, &variates.purposeWeights[i * m]);
    multiply(variates.q1, variates.q2, variates.pairs, variates.regression.data(),
             variates.purposeWeights.data(), variates.explanatoryWeights.data());
    for (Index at = 0; at < variates.explanatoryWeights.size(); ++at) {
        const double correlation = variates.correlations[at % m];
        variates.explanatoryWeights[at] =
            correlation == 0.0 ? 0.0 : variates.explanatoryWeights[at] / correlation;
    }
}

// The share of a group's variance that the other group's variates explain, rows of `structure` being
// variables.
void findRedundancy(const Block<double>& squares, const Block<double>& structure, int variables, int pairs,
                    double* redundancy) {
    const Index m = pairs;
    for (Index k = 0; k < m; ++k) {
        double sum = 0.0;
        for (Index at = k; at < structure.size(); at += m) sum += structure[at] * structure[at];
        redundancy[k] = squares[k] * sum / variables;
        redundancy[m] += redundancy[k];
    }
}

void summarise(CanonicalVariates& variates) {
    const Index m = variates.correlations.size();
    double sum = 0.0, product = 1.0, inverses = 0.0;
    for (Index k = 0; k < m; ++k) {
        const double remainder = 1.0 - variates.squares[k];
        sum += variates.squares[k];
        product *= remainder;
        inverses += 1.0 / remainder;
    }
    variates.meanSquare = sum / variates.pairs;
    variates.generalisedSquare = 1.0 - product;
    variates.harmonicSquare = 1.0 - variates.pairs / inverses;
}

// Half of the variables in the multipliers of both tests, a whole number: reports depend on this value.
int halfOfVariables(const CanonicalVariates& variates) {
    return (variates.q1 + variates.q2) / 2;
}

// Bartlett's chi-squares with Lawley's correction.
void testBartlett(int samples, CanonicalVariates& variates) {
    const Index m = variates.correlations.size();
    double product = 1.0;
    for (Index k = m; k-- > 0;) {
        product *= 1.0 - variates.squares[k];
        variates.wilks[k] = product;
    }
    double factor = samples - 1.5 - halfOfVariables(variates);
    for (Index k = 0; k < m; ++k) {
        if (k > 0) factor = factor - 1.0 + 1.0 / variates.squares[k - 1];
        variates.chiSquare[k] = -factor * std::log(variates.wilks[k]);
        variates.freedom[k] = static_cast<double>((variates.q1 - k) * (variates.q2 - k));
    }
    ChiSquareUpperProbability(variates.pairs, variates.chiSquare.data(), variates.freedom.data(),
                              variates.chiProbability.data());
}

// Rao's F for all correlations at once (Rao 1951).
void testRao(int samples, CanonicalVariates& variates) {
    const double q1 = variates.q1, q2 = variates.q2;
    variates.raoFreedom1 = q1 * q2;
    if (variates.raoFreedom1 <= 2.0) return;
    const double s =
        std::sqrt((variates.raoFreedom1 * variates.raoFreedom1 - 4.0) / (q1 * q1 + q2 * q2 - 5.0));
    const double root = std::pow(variates.wilks[0], 1.0 / s);
    const double t = s * (samples - 1.5 - halfOfVariables(variates)) + 1.0 - variates.raoFreedom1 / 2.0;
    variates.raoF = (1.0 - root) * t / (variates.raoFreedom1 * root);
    variates.raoFreedom2 = std::trunc(t);
    FUpperProbability(1, &variates.raoF, &variates.raoFreedom1, &variates.raoFreedom2,
                      &variates.raoProbability);
}

} // namespace

ErrorCode CanonicalVariates::allocate(int explanatory, int purpose) {
    q1 = explanatory;
    q2 = purpose;
    pairs = std::min(q1, q2);
    const Index a = q1;
    const Index b = q2;
    const Index m = pairs;
    return moments.allocate(q1 + q2) | r11.allocate(a * a) | r22.allocate(b * b) | r12.allocate(a * b) |
           inverse.allocate(a * a) | regression.allocate(a * b) | explained.allocate(b * b) |
           whitening.allocate(b * b) | vectors.allocate(b * b) | scratch.allocate(std::max(a * a, b * b)) |
           squares.allocate(b) | correlations.allocate(m) | explanatoryWeights.allocate(a * m) |
           purposeWeights.allocate(b * m) | explanatoryStructure.allocate(a * m) |
           purposeStructure.allocate(b * m) | redundancy.allocate(2 * (m + 1)) | wilks.allocate(m) |
           chiSquare.allocate(m) | chiProbability.allocate(m) | freedom.allocate(m);
}

ErrorCode findCanonicalVariates(Screens& screens, const DataMatrix& data, CanonicalVariates& variates) {
    const int q1 = variates.q1, q2 = variates.q2, p = q1 + q2;
    MeanCovarianceCorrelation(data.values.data(), data.samples, p, variates.moments);
    if (anyDeviationBelow(variates.moments.sds.data(), p, leastDeviation)) return illegalData;
    screens.setProgress(15);
    copyPart(variates.moments.correlation, p, 0, 0, q1, q1, variates.r11);
    copyPart(variates.moments.correlation, p, q1, q1, q2, q2, variates.r22);
    copyPart(variates.moments.correlation, p, 0, q1, q1, q2, variates.r12);
    screens.setProgress(20);

    ErrorCode code = invertRegular(q1, variates.r11.data(), variates.scratch.data(), variates.inverse.data());
    if (code != success) return code;
    screens.setProgress(30);

    multiply(q1, q1, q2, variates.inverse.data(), variates.r12.data(), variates.regression.data());
    multiplyTransposed(q1, q2, q2, variates.r12.data(), variates.regression.data(),
                       variates.explained.data());
    code = findWhitening(variates);
    if (code == success) code = findCorrelations(variates);
    if (code != success) return code;
    screens.setProgress(50);

    findWeights(variates);
    multiply(q1, q1, variates.pairs, variates.r11.data(), variates.explanatoryWeights.data(),
             variates.explanatoryStructure.data());
    multiply(q2, q2, variates.pairs, variates.r22.data(), variates.purposeWeights.data(),
             variates.purposeStructure.data());
    screens.setProgress(70);
    findRedundancy(variates.squares, variates.explanatoryStructure, q1, variates.pairs,
                   variates.redundancy.data());
    findRedundancy(variates.squares, variates.purposeStructure, q2, variates.pairs,
                   &variates.redundancy[variates.redundancy.size() / 2]);
    summarise(variates);
    screens.setProgress(85);
    testBartlett(data.samples, variates);
    testRao(data.samples, variates);
    screens.setProgress(100);
    return success;
}
