#include "analysis/multivariate/factor/maximum_likelihood_factor.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/moments.h"
#include "numeric/product.h"

namespace {

constexpr int mostRounds = 50;
constexpr int mostTextbookRounds = 500;
constexpr double smallestChange = 1e-5;
constexpr double leastGradient = 1e-12;
// Below it a derivative that a round does not halve is rounding.
constexpr double roundingGradient = 1e-9;
constexpr double largestChange = 999.0;
constexpr double longestStep = 2.0; // of ln s
constexpr int mostHalvings = 20;
// Below this ratio of its eigenvalues the matrix of second derivatives is no guide.
constexpr double leastCondition = 1e-10;
constexpr double unestimatedUniqueness = 0.5;
// A start above it would move so far in its first step that it counts as divergence.
constexpr double greatestStart = 100.0;

// Completes a point whose uniquenesses are set.
ErrorCode evaluate(LikelihoodWork& work, UniquenessPoint& point) {
    composeSymmetric(work.inverseRoot, point.uniqueness.data(), work.matrix);
    for (double& element : work.matrix) element = -element;
    for (Index j = 0; j < work.matrix.rows(); ++j) work.matrix(j, j) += 1.0;
    const ErrorCode code = SymmetricEigen(point.vectors, point.values, work.matrix);
    point.discrepancy = 0.0;
    for (Index l = work.factors; l < point.values.size(); ++l) {
        const double gamma = 1.0 - point.values[l];
        point.discrepancy += std::log(gamma) + 1.0 / gamma - 1.0;
    }
    return code;
}

// w, and the first derivatives of the discrepancy by ln s.
void findGradient(LikelihoodWork& work) {
    multiply(work.inverseRoot, work.current.vectors, work.w);
    const UniquenessPoint& point = work.current;
    for (Index j = 0; j < work.gradient.size(); ++j) {
        double sum = 0.0;
        for (Index l = work.factors; l < point.values.size(); ++l) {
            const double gamma = 1.0 - point.values[l];
            const double w = work.w(j, l);
            sum += -point.values[l] / (gamma * gamma) * w * w;
        }
        work.gradient[j] = sum * point.uniqueness[j];
    }
}

// out = sum over the eigenvalues behind the first m of weight(mu) w w'.
template <class Weight> void sumBehind(LikelihoodWork& work, Weight weight, Matrix& out) {
    std::fill_n(work.weights.data(), work.factors, 0.0);
    for (Index l = work.factors; l < work.weights.size(); ++l) {
        work.weights[l] = weight(work.current.values[l]);
    }
    composeSymmetric(work.w, work.weights.data(), out);
}

// Second derivatives by ln s (Clarke 1970), in a form without 0 / 0 for eigenvalues that are equal. Leaves
// the sum of w w' / gamma in `first`.
void findHessian(LikelihoodWork& work) {
    const Index p = work.hessian.rows();
    sumBehind(
        work, [](double mu) { return 1.0 / (1.0 - mu); }, work.first);
    sumBehind(
        work, [](double mu) { return 1.0 / ((1.0 - mu) * (1.0 - mu)); }, work.second);
    for (Index i = 0; i < p; ++i) {
        for (Index j = 0; j < p; ++j) {
            const double first = work.first(i, j);
            work.hessian(i, j) = 2.0 * first * work.second(i, j) - first * first;
        }
    }
    for (Index k = 0; k < work.factors; ++k) {
        const double leading = work.current.values[k];
        sumBehind(
            work, [leading](double mu) { return 2.0 * (-mu / ((1.0 - mu) * (1.0 - mu))) / (leading - mu); },
            work.second);
        for (Index i = 0; i < p; ++i) {
            for (Index j = 0; j < p; ++j) {
                work.hessian(i, j) += work.w(i, k) * work.w(j, k) * work.second(i, j);
            }
        }
    }
    const Block<double>& s = work.current.uniqueness;
    for (Index i = 0; i < p; ++i) {
        for (Index j = 0; j < p; ++j) work.hessian(i, j) *= s[i] * s[j];
        work.hessian(i, i) += work.gradient[i];
    }
}

// An approximation that is never indefinite, for places where the second derivatives are.
void approximateHessian(LikelihoodWork& work) {
    const Block<double>& s = work.current.uniqueness;
    for (Index i = 0; i < s.size(); ++i) {
        for (Index j = 0; j < s.size(); ++j) {
            const double first = work.first(i, j);
            work.hessian(i, j) = s[i] * s[j] * first * first;
        }
        work.hessian(i, i) += std::max(work.gradient[i], 0.0);
    }
}

// step = -inverse gradient, no longer than longestStep. Returns success or singularFactorMatrix.
ErrorCode makeStep(LikelihoodWork& work) {
    double longest = 0.0;
    for (Index i = 0; i < work.step.size(); ++i) {
        const double* row = work.inverse.row(i);
        double sum = 0.0;
        for (Index j = 0; j < work.gradient.size(); ++j) sum += row[j] * work.gradient[j];
        work.step[i] = sum;
        longest = std::max(longest, std::fabs(sum));
    }
    if (!allFinite(work.step)) return singularFactorMatrix;
    const double scale = longest > longestStep ? longestStep / longest : 1.0;
    for (double& part : work.step) part *= -scale;
    return success;
}

// The Newton step of ln s, with the gradient that is there. Returns success, outOfMemory or
// singularFactorMatrix.
ErrorCode findStep(LikelihoodWork& work) {
    findHessian(work);
    std::copy(work.hessian.begin(), work.hessian.end(), work.matrix.begin());
    ErrorCode code = symmetricEigenvalues(work.matrix, work.weights);
    if (code != success) return code;
    const double greatest = work.weights[0];
    const double least = work.weights[work.weights.size() - 1];
    if (!(least > leastCondition * greatest)) approximateHessian(work);
    double determinant = 0.0;
    code = MatrixInverse(work.hessian, work.inverse, determinant);
    if (code != success) return code;
    return makeStep(work);
}

// Moves along the step, halved while it makes the fit worse; the last trial is taken in any case and the
// point before it becomes `trial`.
ErrorCode takeStep(LikelihoodWork& work) {
    const double before = work.current.discrepancy;
    const double tolerance = 1e-10 * std::max(1.0, std::fabs(before));
    double part = 1.0;
    for (int halvings = 0;; ++halvings) {
        for (Index j = 0; j < work.step.size(); ++j) {
            work.trial.uniqueness[j] = work.current.uniqueness[j] * std::exp(part * work.step[j]);
        }
        const ErrorCode code = evaluate(work, work.trial);
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
ErrorCode findLoadings(const Matrix& correlation, LikelihoodWork& work, FactorModel& model) {
    const Index p = correlation.rows();
    const Block<double>& s = work.current.uniqueness;
    for (Index i = 0; i < p; ++i) {
        for (Index j = 0; j < p; ++j) {
            work.matrix(i, j) = correlation(i, j) / std::sqrt(s[i]) / std::sqrt(s[j]);
        }
    }
    Matrix& vectors = work.hessian;
    ErrorCode code = SymmetricEigen(vectors, work.weights, work.matrix);
    if (code != success) return code;
    const double* values = work.weights.data();
    const Index kept = std::count_if(values, values + work.factors, [](double value) { return value > 1.0; });
    code = model.keep(kept);
    if (code != success) return code;
    for (Index k = 0; k < kept; ++k) {
        double sum = 0.0;
        for (Index j = 0; j < p; ++j) {
            const double loading = std::sqrt(s[j]) * vectors(j, k) * std::sqrt(values[k] - 1.0);
            model.loadings(j, k) = loading;
            sum += loading * loading;
        }
        model.sumsOfSquares[k] = sum;
    }
    for (Index j = 0; j < p; ++j) model.communality[j] = 1.0 - s[j];
    return success;
}

// The same without a division by uniquenesses, which vanish where a variable is all common: the leading mu
// and v give sqrt(mu) R^(1/2) v, and R^(1/2) v = R w.
ErrorCode findExactLoadings(const Matrix& correlation, LikelihoodWork& work, FactorModel& model) {
    const Index p = correlation.rows();
    const double* values = work.current.values.data();
    const Index kept = std::count_if(values, values + work.factors, [](double value) { return value > 0.0; });
    const ErrorCode code = model.keep(kept);
    if (code != success) return code;
    multiply(work.inverseRoot, work.current.vectors, work.w);
    multiply(correlation, work.w, work.matrix);
    for (Index k = 0; k < kept; ++k) {
        const double root = std::sqrt(values[k]);
        double sum = 0.0;
        for (Index j = 0; j < p; ++j) {
            const double loading = root * work.matrix(j, k);
            model.loadings(j, k) = loading;
            sum += loading * loading;
        }
        model.sumsOfSquares[k] = sum;
    }
    for (Index j = 0; j < p; ++j) model.communality[j] = 1.0 - work.current.uniqueness[j];
    return success;
}

// Takes the next step. Returns success, outOfMemory or singularFactorMatrix.
ErrorCode advance(LikelihoodWork& work, Settling& settling) {
    ErrorCode code = findStep(work);
    if (code == success) code = takeStep(work);
    if (code != success) return code;
    settling.add(uniquenessChange(work));
    return settling.change > largestChange ? singularFactorMatrix : success;
}

// Until no uniqueness moves.
ErrorCode settleUniquenesses(const Stage& stage, LikelihoodWork& work, Settling& settling) {
    for (int round = 0; round < mostRounds && !settling.reached; ++round) {
        ErrorCode code = stage.advance(round);
        if (code != success) return code;
        findGradient(work);
        code = advance(work, settling);
        if (code != success) return code;
        settling.reached = settling.change < smallestChange;
    }
    return success;
}

double largestDerivative(const Block<double>& gradient) {
    double largest = 0.0;
    for (const double derivative : gradient) largest = std::max(largest, std::fabs(derivative));
    return allFinite(gradient) ? largest : std::numeric_limits<double>::infinity();
}

// Until all derivatives vanish.
ErrorCode settleGradient(const Stage& stage, LikelihoodWork& work, Settling& settling) {
    double before = std::numeric_limits<double>::infinity();
    for (int round = 0; round < mostTextbookRounds; ++round) {
        findGradient(work);
        const double size = largestDerivative(work.gradient);
        settling.reached = size < leastGradient || (size < roundingGradient && size > before / 2.0);
        if (settling.reached) return success;
        before = size;
        ErrorCode code = stage.advance(round);
        if (code == success) code = advance(work, settling);
        if (code != success) return code;
    }
    return success;
}

} // namespace

ErrorCode UniquenessPoint::allocate(Index p) {
    return uniqueness.allocate(p) | values.allocate(p) | vectors.allocate(p, p);
}

ErrorCode LikelihoodWork::allocate(Index p) {
    ErrorCode code = current.allocate(p) | trial.allocate(p);
    for (Matrix* square : {&inverseRoot, &w, &first, &second, &hessian, &inverse, &matrix}) {
        code |= square->allocate(p, p);
    }
    for (Block<double>* vector : {&weights, &gradient, &step}) code |= vector->allocate(p);
    return code;
}

ErrorCode startLikelihood(const Matrix& correlation, bool estimated, const FactorModel& model,
                          LikelihoodWork& work) {
    const double variables = static_cast<double>(correlation.rows());
    const double m = model.requested;
    if (m > variables || (variables - m) * (variables - m) < variables + m) return singularFactorMatrix;
    work.factors = factorRoom(model.requested);
    for (Index j = 0; j < work.current.uniqueness.size(); ++j) {
        const double place = estimated ? 1.0 - model.communality[j] : unestimatedUniqueness;
        const double start = std::min((1.0 - m / (2.0 * variables)) * place, greatestStart);
        if (!(start > 0.0)) return singularFactorMatrix;
        work.current.uniqueness[j] = start;
    }

    const ErrorCode code = SymmetricEigen(work.matrix, work.weights, correlation);
    if (code != success) return code;
    for (double& value : work.weights) value = value > 0.0 ? 1.0 / std::sqrt(value) : 0.0;
    composeSymmetric(work.matrix, work.weights.data(), work.inverseRoot);
    return success;
}

ErrorCode fitLikelihood(const Numerics& numerics, const Matrix& correlation, LikelihoodWork& work,
                        FactorModel& model, const Stage& stage) {
    const auto settle = numerics.textbook ? settleGradient : settleUniquenesses;
    const auto load = numerics.textbook ? findExactLoadings : findLoadings;
    ErrorCode code = evaluate(work, work.current);
    if (code != success) return code;
    model.settling.reached = false;
    code = settle(stage, work, model.settling);
    return code == success ? load(correlation, work, model) : code;
}
