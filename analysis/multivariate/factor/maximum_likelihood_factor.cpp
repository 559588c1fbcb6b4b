#include "analysis/multivariate/factor/maximum_likelihood_factor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/moments.h"
#include "numeric/product.h"

namespace {

constexpr int mostRounds = 50;
constexpr double smallestChange = 1e-5;
constexpr double largestChange = 999.0;
constexpr double longestStep = 2.0; // of ln s
constexpr int mostHalvings = 20;
// Below this ratio of its eigenvalues the matrix of second derivatives is no guide.
constexpr double leastCondition = 1e-10;
constexpr double unestimatedUniqueness = 0.5;
// A start above it would move so far in its first step that it counts as divergence.
constexpr double greatestStart = 100.0;

// Completes a point whose uniquenesses are set.
ErrorCode evaluate(int p, LikelihoodWork& work, UniquenessPoint& point) {
    const Index n = p;
    composeSymmetric(p, work.inverseRoot.data(), point.uniqueness.data(), work.matrix.data());
    for (double& element : work.matrix) element = -element;
    for (Index j = 0; j < n; ++j) work.matrix[j * (n + 1)] += 1.0;
    const ErrorCode code =
        SymmetricEigen(p, p, point.vectors.data(), point.values.data(), work.matrix.data());
    point.discrepancy = 0.0;
    for (auto l = work.factors; l < n; ++l) {
        const double gamma = 1.0 - point.values[l];
        point.discrepancy += std::log(gamma) + 1.0 / gamma - 1.0;
    }
    return code;
}

// First derivatives of the discrepancy by ln s.
void findGradient(Index n, LikelihoodWork& work) {
    const UniquenessPoint& point = work.current;
    std::fill(work.gradient.begin(), work.gradient.end(), 0.0);
    for (Index j = 0; j < n; ++j) {
        for (auto l = work.factors; l < n; ++l) {
            const double gamma = 1.0 - point.values[l];
            const double w = work.w[j * n + l];
            work.gradient[j] += -point.values[l] / (gamma * gamma) * w * w;
        }
        work.gradient[j] *= point.uniqueness[j];
    }
}

// out = sum over the eigenvalues behind the first m of weight(mu) w w'.
template <class Weight> void sumBehind(int p, LikelihoodWork& work, Weight weight, Block<double>& out) {
    const Index m = work.factors;
    std::fill_n(work.weights.data(), m, 0.0);
    for (Index l = m; l < work.weights.size(); ++l) work.weights[l] = weight(work.current.values[l]);
    composeSymmetric(p, work.w.data(), work.weights.data(), out.data());
}

// Second derivatives by ln s (Clarke 1970), in a form without 0 / 0 for eigenvalues that are equal. Leaves
// the sum of w w' / gamma in `first`.
void findHessian(int p, LikelihoodWork& work) {
    const Index n = p;
    sumBehind(
        p, work, [](double mu) { return 1.0 / (1.0 - mu); }, work.first);
    sumBehind(
        p, work, [](double mu) { return 1.0 / ((1.0 - mu) * (1.0 - mu)); }, work.second);
    for (Index i = 0; i < n * n; ++i) {
        work.hessian[i] = 2.0 * work.first[i] * work.second[i] - work.first[i] * work.first[i];
    }
    for (Index k = 0; k < work.factors; ++k) {
        const double leading = work.current.values[k];
        sumBehind(
            p, work,
            [leading](double mu) { return 2.0 * (-mu / ((1.0 - mu) * (1.0 - mu))) / (leading - mu); },
            work.second);
        for (Index i = 0; i < n; ++i) {
            for (Index j = 0; j < n; ++j) {
                work.hessian[i * n + j] += work.w[i * n + k] * work.w[j * n + k] * work.second[i * n + j];
            }
        }
    }
    const Block<double>& s = work.current.uniqueness;
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j < n; ++j) work.hessian[i * n + j] *= s[i] * s[j];
        work.hessian[i * (n + 1)] += work.gradient[i];
    }
}

// An approximation that is never indefinite, for places where the second derivatives are.
void approximateHessian(Index n, LikelihoodWork& work) {
    const Block<double>& s = work.current.uniqueness;
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j < n; ++j) {
            work.hessian[i * n + j] = s[i] * s[j] * work.first[i * n + j] * work.first[i * n + j];
        }
        work.hessian[i * (n + 1)] += std::max(work.gradient[i], 0.0);
    }
}

// The Newton step of ln s, no longer than longestStep. Returns 0, outOfMemory or singularFactorMatrix.
ErrorCode findStep(int p, LikelihoodWork& work) {
    const Index n = p;
    multiply(p, p, p, work.inverseRoot.data(), work.current.vectors.data(), work.w.data());
    findGradient(n, work);
    findHessian(p, work);
    ErrorCode code = SymmetricEigen(p, p, work.matrix.data(), work.weights.data(), work.hessian.data());
    if (code != success) return code;
    if (!(work.weights[n - 1] > leastCondition * work.weights[0])) approximateHessian(n, work);
    double determinant = 0.0;
    code = MatrixInverse(p, p, work.hessian.data(), work.inverse.data(), determinant);
    if (code != success) return code;
    multiply(p, p, 1, work.inverse.data(), work.gradient.data(), work.step.data());
    if (!allFinite(work.step.data(), n)) return singularFactorMatrix;
    double longest = 0.0;
    for (const double part : work.step) longest = std::max(longest, std::fabs(part));
    const double scale = longest > longestStep ? longestStep / longest : 1.0;
    for (double& part : work.step) part *= -scale;
    return success;
}

// Moves along the step, halved while it makes the fit worse; the last trial is taken in any case and the
// point before it becomes `trial`.
ErrorCode takeStep(int p, LikelihoodWork& work) {
    const Index n = p;
    const double before = work.current.discrepancy;
    const double tolerance = 1e-10 * std::max(1.0, std::fabs(before));
    double part = 1.0;
    for (int halvings = 0;; ++halvings) {
        for (Index j = 0; j < n; ++j) {
            work.trial.uniqueness[j] = work.current.uniqueness[j] * std::exp(part * work.step[j]);
        }
        const ErrorCode code = evaluate(p, work, work.trial);
        if (code != success) return code;
        const double after = work.trial.discrepancy;
        const bool worse = std::isnan(after) || after - before > tolerance;
        if (!worse || halvings == mostHalvings) break;
        part /= 2.0;
    }
    std::swap(work.current, work.trial);
    return success;
}

double uniquenessChange(const LikelihoodWork& work) {
    double change = 0.0;
    for (Index j = 0; j < work.current.uniqueness.size(); ++j) {
        change = std::max(change, std::fabs(work.current.uniqueness[j] - work.trial.uniqueness[j]));
    }
    return change;
}

// Loadings from the eigenpairs of the correlations scaled by the roots of the uniquenesses.
ErrorCode findLoadings(int p, const double* correlation, LikelihoodWork& work, FactorModel& model) {
    const Index n = p;
    const Block<double>& s = work.current.uniqueness;
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j < n; ++j) {
            work.matrix[i * n + j] = correlation[i * n + j] / std::sqrt(s[i]) / std::sqrt(s[j]);
        }
    }
    Block<double>& vectors = work.hessian;
    const ErrorCode code = SymmetricEigen(p, p, vectors.data(), work.weights.data(), work.matrix.data());
    if (code != success) return code;
    const double* values = work.weights.data();
    const Index kept =
        (std::count_if(values, values + work.factors, [](double value) { return value > 1.0; }));
    model.kept = static_cast<int>(kept);
    for (Index k = 0; k < kept; ++k) {
        double sum = 0.0;
        for (Index j = 0; j < n; ++j) {
            const double loading = std::sqrt(s[j]) * vectors[j * n + k] * std::sqrt(values[k] - 1.0);
            model.loadings[j * kept + k] = loading;
            sum += loading * loading;
        }
        model.sumsOfSquares[k] = sum;
    }
    for (Index j = 0; j < n; ++j) model.communality[j] = 1.0 - s[j];
    return success;
}

} // namespace

ErrorCode UniquenessPoint::allocate(Index p) {
    return uniqueness.allocate(p) | values.allocate(p) | vectors.allocate(p * p);
}

ErrorCode LikelihoodWork::allocate(int p) {
    const Index n = p;
    ErrorCode code = current.allocate(n) | trial.allocate(n);
    for (Block<double>* square : {&inverseRoot, &w, &first, &second, &hessian, &inverse, &matrix}) {
        code |= square->allocate(n * n);
    }
    for (Block<double>* vector : {&weights, &gradient, &step}) code |= vector->allocate(n);
    return code;
}

ErrorCode startLikelihood(int p, const double* correlation, bool estimated, const FactorModel& model,
                          LikelihoodWork& work) {
    const double variables = p;
    const double m = model.requested;
    if (m > variables || (variables - m) * (variables - m) < variables + m) return singularFactorMatrix;
    work.factors = std::max(model.requested, 0);
    for (Index j = 0; j < work.current.uniqueness.size(); ++j) {
        const double place = estimated ? 1.0 - model.communality[j] : unestimatedUniqueness;
        const double start = std::min((1.0 - m / (2.0 * variables)) * place, greatestStart);
        if (!(start > 0.0)) return singularFactorMatrix;
        work.current.uniqueness[j] = start;
    }

    const ErrorCode code = SymmetricEigen(p, p, work.matrix.data(), work.weights.data(), correlation);
    if (code != success) return code;
    for (double& value : work.weights) value = value > 0.0 ? 1.0 / std::sqrt(value) : 0.0;
    composeSymmetric(p, work.matrix.data(), work.weights.data(), work.inverseRoot.data());
    return success;
}

ErrorCode fitLikelihood(int p, const double* correlation, LikelihoodWork& work, FactorModel& model) {
    ErrorCode code = evaluate(p, work, work.current);
    if (code != success) return code;
    for (int round = 0; round < mostRounds; ++round) {
        code = findStep(p, work);
        if (code == success) code = takeStep(p, work);
        if (code != success) return code;
        const double change = uniquenessChange(work);
        if (change > largestChange) return singularFactorMatrix;
        if (change < smallestChange) break;
    }
    return findLoadings(p, correlation, work, model);
}
