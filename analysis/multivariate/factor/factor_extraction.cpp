#include "analysis/multivariate/factor/factor_extraction.h"

#include <algorithm>
#include <cmath>

#include "numeric/eigen.h"

namespace {

constexpr int mostPasses = 70;
constexpr double smallestChange = 1e-5;

struct ReducedMatrix {
    Block<double> matrix;  // p x p: the correlations with the communalities on the diagonal
    Block<double> vectors; // p x p
    Block<double> values;  // p

    ErrorCode allocate(Index p) {
        return matrix.allocate(p * p) | vectors.allocate(p * p) | values.allocate(p);
    }
};

// Replaces the communalities by those of the leading `factors` eigenvectors. Returns the largest change.
double updateCommunalities(Index p, int factors, const ReducedMatrix& reduced, double* communality) {
    double change = 0.0;
    for (Index j = 0; j < p; ++j) {
        double sum = 0.0;
        for (Index k = 0; k < factors; ++k) {
            sum += reduced.values[k] * reduced.vectors[j * p + k] * reduced.vectors[j * p + k];
        }
        change = std::max(change, std::fabs(sum - communality[j]));
        communality[j] = sum;
    }
    return change;
}

} // namespace

Index factorRoom(int requested) {
    return (std::max(requested, 0));
}

ErrorCode FactorModel::allocate(int p, int requestedFactors) {
    requested = requestedFactors;
    const Index variables = p;
    const Index room = factorRoom(requested);
    const ErrorCode code =
        communality.allocate(variables) | loadings.allocate(variables * room) | sumsOfSquares.allocate(room);
    if (code == success) std::fill(communality.begin(), communality.end(), 1.0);
    return code;
}

ErrorCode extractPrincipalFactors(int p, const double* correlation, bool repeat, FactorModel& model) {
    const Index variables = p;
    ReducedMatrix reduced;
    ErrorCode code = reduced.allocate(variables);
    if (code != success) return code;
    int factors = std::clamp(model.requested, 0, p);
    for (int pass = 0; pass < mostPasses; ++pass) {
        std::copy_n(correlation, variables * variables, reduced.matrix.data());
        for (Index j = 0; j < variables; ++j) {
            reduced.matrix[j * (variables + 1)] = model.communality[j];
        }
        code = SymmetricEigen(p, p, reduced.vectors.data(), reduced.values.data(), reduced.matrix.data());
        if (code != success) return code;
        factors = static_cast<int>(std::count_if(reduced.values.data(), reduced.values.data() + factors,
                                                 [](double value) { return value > 0.0; }));
        const double change = updateCommunalities(variables, factors, reduced, model.communality.data());
        if (change < smallestChange || !repeat) break;
    }

    model.kept = factors;
    const Index kept = factors;
    for (Index k = 0; k < kept; ++k) {
        model.sumsOfSquares[k] = reduced.values[k];
        const double root = std::sqrt(reduced.values[k]);
        for (Index j = 0; j < variables; ++j) {
            model.loadings[j * kept + k] = root * reduced.vectors[j * variables + k];
        }
    }
    return success;
}
