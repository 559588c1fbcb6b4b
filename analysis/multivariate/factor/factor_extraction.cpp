#include "analysis/multivariate/factor/factor_extraction.h"

#include <algorithm>
#include <cmath>

#include "numeric/eigen.h"

namespace {

constexpr int mostPasses = 70;
constexpr double smallestChange = 1e-5;

struct ReducedMatrix {
    Matrix matrix;        // p x p: the correlations with the communalities on the diagonal
    Matrix vectors;       // p x p
    Block<double> values; // p

    [[nodiscard]] ErrorCode allocate(Index p) {
        return matrix.allocate(p, p) | vectors.allocate(p, p) | values.allocate(p);
    }
};

// Replaces the communalities by those of the leading `factors` eigenvectors. Returns the largest change.
double updateCommunalities(const ReducedMatrix& reduced, Index factors, Block<double>& communality) {
    double change = 0.0;
    for (Index j = 0; j < communality.size(); ++j) {
        const double* row = reduced.vectors.row(j);
        double sum = 0.0;
        for (Index k = 0; k < factors; ++k) sum += reduced.values[k] * row[k] * row[k];
        change = std::max(change, std::fabs(sum - communality[j]));
        communality[j] = sum;
    }
    return change;
}

} // namespace

Index factorRoom(int requested) {
    return std::max(requested, 0);
}

ErrorCode FactorModel::allocate(Index p, int requestedFactors) {
    requested = requestedFactors;
    const Index room = factorRoom(requested);
    const ErrorCode code =
        communality.allocate(p) | loadings.allocate(p, room) | sumsOfSquares.allocate(room);
    if (code == success) std::fill(communality.begin(), communality.end(), 1.0);
    return code;
}

ErrorCode FactorModel::keep(Index factors) {
    return loadings.allocate(communality.size(), factors) | sumsOfSquares.allocate(factors);
}

ErrorCode extractPrincipalFactors(const Matrix& correlation, bool repeat, FactorModel& model) {
    const Index p = correlation.rows();
    ReducedMatrix reduced;
    ErrorCode code = reduced.allocate(p);
    if (code != success) return code;
    Index factors = std::clamp<Index>(model.requested, 0, p);
    for (int pass = 0; pass < mostPasses; ++pass) {
        std::copy(correlation.begin(), correlation.end(), reduced.matrix.begin());
        for (Index j = 0; j < p; ++j) reduced.matrix(j, j) = model.communality[j];
        code = SymmetricEigen(reduced.vectors, reduced.values, reduced.matrix);
        if (code != success) return code;
        const double* values = reduced.values.data();
        factors = std::count_if(values, values + factors, [](double value) { return value > 0.0; });
        const double change = updateCommunalities(reduced, factors, model.communality);
        if (change < smallestChange || !repeat) break;
    }

    code = model.keep(factors);
    if (code != success) return code;
    for (Index k = 0; k < factors; ++k) {
        model.sumsOfSquares[k] = reduced.values[k];
        const double root = std::sqrt(reduced.values[k]);
        for (Index j = 0; j < p; ++j) model.loadings(j, k) = root * reduced.vectors(j, k);
    }
    return success;
}
