#include "analysis/multivariate/factor/factor_extraction.h"

#include <algorithm>
#include <cmath>

#include "numeric/eigen.h"

namespace {

// How often communalities are replaced at most, and the change that ends it.
struct Repetition {
    int mostPasses;
    double smallestChange;
};

constexpr Repetition once = {1, 0.0};
constexpr Repetition classicRepetition = {70, 1e-5};
constexpr int mostTextbookPasses = 10000;
constexpr int passesBetweenProgress = 100;
constexpr int extractionProgress = 25; // percent, where the engine stands

Repetition repetitionOf(const Numerics& numerics, bool repeat) {
    if (!repeat) return once;
    return numerics.textbook ? Repetition{mostTextbookPasses, numerics.iterationTolerance}
                             : classicRepetition;
}

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

ErrorCode extractPrincipalFactors(Screens& screens, const Numerics& numerics, const Matrix& correlation,
                                  bool repeat, FactorModel& model) {
    const Index p = correlation.rows();
    ReducedMatrix reduced;
    ErrorCode code = reduced.allocate(p);
    if (code != success) return code;
    Index factors = std::clamp<Index>(model.requested, 0, p);
    const Repetition repetition = repetitionOf(numerics, repeat);
    model.settling.reached = !repeat;
    for (int pass = 1; pass <= repetition.mostPasses; ++pass) {
        std::copy(correlation.begin(), correlation.end(), reduced.matrix.begin());
        for (Index j = 0; j < p; ++j) reduced.matrix(j, j) = model.communality[j];
        code = SymmetricEigen(reduced.vectors, reduced.values, reduced.matrix);
        if (code != success) return code;
        const double* values = reduced.values.data();
        factors = std::count_if(values, values + factors, [](double value) { return value > 0.0; });
        const double change = updateCommunalities(reduced, factors, model.communality);
        if (!repeat) break;
        model.settling.add(change);
        model.settling.reached = change < repetition.smallestChange;
        if (model.settling.reached) break;
        if (pass % passesBetweenProgress == 0) code = screens.setProgress(extractionProgress);
        if (code != success) return code;
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
