#include "analysis/basic/event_models/newton_raphson.h"

#include <algorithm>
#include <cmath>

#include "numeric/lu.h"
#include "numeric/moments.h"

namespace {

constexpr Index mostHalvings = 20;
constexpr double allowedLoss = 1e-12;   // of the log-likelihood in a step
constexpr double convergence = 1e-8;    // change of a parameter
constexpr double runawayVariance = 1e8; // over that at the start

// Inverts the information, scaled to a unit diagonal, into the covariance: success, singularMatrix or
// outOfMemory.
ErrorCode invertInformation(NewtonRaphsonFit& fit) {
    const Index count = fit.parameters.size();
    Matrix& information = fit.point.information;
    for (Index i = 0; i < count; ++i) {
        fit.scales[i] = std::sqrt(information(i, i));
        if (!(fit.scales[i] > 0.0) || !std::isfinite(fit.scales[i])) return singularMatrix;
        for (Index j = 0; j < i; ++j) information(j, i) = information(i, j);
    }
    for (Index i = 0; i < count; ++i) {
        for (Index j = 0; j < count; ++j) {
            fit.scaled(i, j) = information(i, j) / fit.scales[i] / fit.scales[j];
        }
    }
    const ErrorCode code = invertRegular(fit.scaled, fit.covariance, fit.inverse);
    if (code != success) return code;
    if (!allFinite(fit.inverse)) return singularMatrix;
    for (Index i = 0; i < count; ++i) {
        for (Index j = 0; j < count; ++j) {
            fit.covariance(i, j) = fit.inverse(i, j) / fit.scales[i] / fit.scales[j];
        }
    }
    return success;
}

void findStep(NewtonRaphsonFit& fit) {
    const Index count = fit.parameters.size();
    for (Index i = 0; i < count; ++i) {
        fit.step[i] = 0.0;
        for (Index j = 0; j < count; ++j) fit.step[i] += fit.covariance(i, j) * fit.point.gradient[j];
    }
}

// Takes the step, as much of it as keeps the likelihood. False when nothing finite is left of it.
bool takeStep(LikelihoodModel& model, NewtonRaphsonFit& fit) {
    const Index count = fit.parameters.size();
    const double least = fit.likelihood - allowedLoss * (1.0 + std::fabs(fit.likelihood));
    for (Index halvings = 0;; ++halvings) {
        for (Index i = 0; i < count; ++i) fit.trial[i] = fit.parameters[i] + fit.step[i];
        model.evaluate(fit.trial.data(), fit.point);
        const bool finite = std::isfinite(fit.point.value);
        if ((finite && fit.point.value >= least) || halvings == mostHalvings) {
            std::copy(fit.trial.begin(), fit.trial.end(), fit.parameters.begin());
            fit.likelihood = fit.point.value;
            return finite;
        }
        for (double& change : fit.step) change *= 0.5;
    }
}

bool runsAway(Index slopes, const NewtonRaphsonFit& fit) {
    for (Index j = 0; j < slopes; ++j) {
        if (fit.covariance(j, j) > runawayVariance * fit.start[j]) return true;
    }
    return false;
}

bool hasConverged(const NewtonRaphsonFit& fit) {
    for (Index i = 0; i < fit.parameters.size(); ++i) {
        if (!(std::fabs(fit.step[i]) <= convergence * (1.0 + std::fabs(fit.parameters[i])))) return false;
    }
    return true;
}

} // namespace

ErrorCode LikelihoodPoint::allocate(Index count) {
    return gradient.allocate(count) | information.allocate(count, count);
}

void LikelihoodPoint::clear() {
    value = 0.0;
    std::fill(gradient.begin(), gradient.end(), 0.0);
    information.fill(0.0);
}

void LikelihoodPoint::add(const double* row, double first, double second) {
    const Index count = gradient.size();
    for (Index i = 0; i < count; ++i) {
        gradient[i] += first * row[i];
        const double weight = second * row[i];
        double* line = information.row(i);
        for (Index j = 0; j <= i; ++j) line[j] += weight * row[j];
    }
}

ErrorCode NewtonRaphsonFit::allocate(Index count) {
    return parameters.allocate(count) | covariance.allocate(count, count) | point.allocate(count) |
           start.allocate(count) | trial.allocate(count) | step.allocate(count) | scales.allocate(count) |
           scaled.allocate(count, count) | inverse.allocate(count, count);
}

double NewtonRaphsonFit::standardError(const double* weights) const {
    const Index count = parameters.size();
    double variance = 0.0;
    for (Index i = 0; i < count; ++i) {
        for (Index j = 0; j < count; ++j) variance += weights[i] * weights[j] * covariance(i, j);
    }
    return std::sqrt(variance);
}

ErrorCode newtonRaphson(LikelihoodModel& model, Index slopes, Index limit, NewtonRaphsonFit& fit,
                        const Stage& stage) {
    model.evaluate(fit.parameters.data(), fit.point);
    fit.startLikelihood = fit.likelihood = fit.point.value;
    fit.iterations = 0;
    if (!std::isfinite(fit.likelihood)) return notFinite;
    ErrorCode code = invertInformation(fit);
    if (code != success) return code == singularMatrix ? newtonRaphsonSingular : code;
    for (Index j = 0; j < slopes; ++j) fit.start[j] = fit.covariance(j, j);

    while (fit.iterations < limit) {
        code = stage.advance(fit.iterations);
        if (code != success) return code;
        findStep(fit);
        if (!takeStep(model, fit)) return notFinite;
        ++fit.iterations;
        code = invertInformation(fit);
        if (code != success) return code == singularMatrix ? newtonRaphsonNotConvergent : code;
        if (runsAway(slopes, fit)) return newtonRaphsonNotConvergent;
        if (hasConverged(fit)) return success;
    }
    return newtonRaphsonNotConvergent;
}
