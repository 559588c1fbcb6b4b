#include "analysis/basic/regression/swept_model.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/sweep.h"

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();
// Of the diagonal of an inverse; beyond it updates are not worth their doubts.
constexpr double largestInflation = 1e7;
// Of a correlation matrix times its inverse; a wrong one leaves 1 and more.
constexpr double largestResidual = 1e-6;
// Variables that are closer than this share of what they do are told apart by a new inverse.
constexpr double closeness = 1e-8;

// Of the square of a number, and what it may be wrong by when the number may be by `error`.
SelectionGain square(Index variable, double root, double error) {
    return {variable, root * root, error * (2.0 * std::fabs(root) + error), false};
}

// Whether the greater of two is so beyond doubt, also once both were added to a determination.
bool isGreater(double greater, double less) {
    return greater - less > closeness * std::fabs(greater) + 2.0 * epsilon;
}

} // namespace

ErrorCode SelectedModel::allocate(Index allVariables) {
    const Index p = allVariables;
    return variables.allocate(p) | inModel.allocate(p) | matrix.allocate(p, p) | inverse.allocate(p, p) |
           weights.allocate(p) | column.allocate(p);
}

// Some four times the largest differences from new inverses that were seen among the square roots of gains,
// and a half of that among what is left of a candidate, on up to 400 variables with inflations of up to
// 1e6.
double SweptModel::rounding() const {
    return 4.0 * epsilon * inflation_ * std::sqrt(inflation_);
}

void SweptModel::noteInflations() {
    for (Index i = 0; i < model_.count; ++i) {
        const Index v = model_.variables[i];
        inflation_ = std::max(inflation_, -element(v, v));
    }
}

// Whether the inverse of the model is one: the product of two wrong pivots can look like a right one.
bool SweptModel::isSound() const {
    const Index k = model_.count;
    const Index* const variables = model_.variables.data();
    double* const product = model_.column.data();
    const auto probe = [](Index i) { return std::cos(static_cast<double>(i)); };
    for (Index i = 0; i < k; ++i) {
        const double inflation = model_.inverse(i, i);
        if (!(inflation > 0.0 && inflation < largestInflation)) return false;
        product[i] = 0.0;
        for (Index j = 0; j < k; ++j) product[i] += model_.inverse(i, j) * probe(j);
    }
    for (Index i = 0; i < k; ++i) {
        const double* const beside = data_.moments.correlation.row(variables[i]);
        double sum = 0.0;
        for (Index j = 0; j < k; ++j) sum += beside[variables[j]] * product[j];
        if (!(std::fabs(sum - probe(i)) < largestResidual)) return false;
    }
    return true;
}

bool SweptModel::build() {
    if (!isSound()) return false;
    const Index k = model_.count;
    const Matrix& correlation = data_.moments.correlation;
    const Index* const variables = model_.variables.data();
    double* const weights = model_.column.data();
    for (Index v = 0; v < data_.variables; ++v) {
        if (v < data_.purpose() && model_.inModel[v]) continue;
        const double* const beside = correlation.row(v);
        for (Index i = 0; i < k; ++i) {
            const double* const inverse = model_.inverse.row(i);
            double sum = 0.0;
            for (Index j = 0; j < k; ++j) sum += inverse[j] * beside[variables[j]];
            weights[i] = v == data_.purpose() ? model_.weights[i] : sum;
            element(v, variables[i]) = weights[i];
        }
        for (Index other = 0; other <= v; ++other) {
            if (model_.inModel[other]) continue;
            const double* const otherBeside = correlation.row(other);
            double left = otherBeside[v];
            for (Index i = 0; i < k; ++i) left -= otherBeside[variables[i]] * weights[i];
            element(v, other) = left;
        }
    }
    for (Index i = 0; i < k; ++i) {
        for (Index j = 0; j <= i; ++j) element(variables[i], variables[j]) = -model_.inverse(i, j);
    }
    isCurrent_ = true;
    inflation_ = 1.0;
    noteInflations();
    return true;
}

void SweptModel::update(Index variable) {
    if (model_.inModel[variable]) {
        sweepIn(model_.matrix, variable, model_.column.data());
    } else {
        sweepBack(model_.matrix, variable, model_.column.data());
    }
    noteInflations();
}

SelectionGain SweptModel::largestEntry() const {
    const double error = 8.0 * rounding(); // of sums of products, which begin with 1
    SelectionGain best;
    double rival = 0.0; // the most that any other may gain
    for (Index v = 0; v < data_.purpose(); ++v) {
        if (model_.inModel[v]) continue;
        const double tolerance = element(v, v);
        if (tolerance <= leastTolerance - error) continue;
        if (!(tolerance > leastTolerance * (1.0 + closeness) + error)) return {.inDoubt = true};
        const double root = element(data_.purpose(), v) / std::sqrt(tolerance);
        const SelectionGain candidate =
            square(v, root, error / std::sqrt(tolerance) + std::fabs(root) * error / tolerance);
        if (!(candidate.gain + candidate.error < 1.0)) return {.inDoubt = true};
        const SelectionGain& lesser = candidate.gain > best.gain ? best : candidate;
        rival = std::max(rival, lesser.gain + lesser.error);
        if (candidate.gain > best.gain) best = candidate;
    }
    best.inDoubt = best.variable >= 0 ? !isGreater(best.gain - best.error, rival) : rival > 0.0;
    return best;
}

SelectionGain SweptModel::leastRemoval() const {
    const double error = rounding();
    SelectionGain best = {.gain = 2.0};
    double rival = 2.0; // the least that any other may cost
    for (Index i = 0; i < model_.count; ++i) {
        const Index v = model_.variables[i];
        const double root = element(data_.purpose(), v) / std::sqrt(-element(v, v));
        const SelectionGain candidate = square(v, root, error);
        if (!(candidate.gain < 1.0)) return {.inDoubt = true};
        const SelectionGain& greater = candidate.gain < best.gain ? best : candidate;
        rival = std::min(rival, greater.gain - greater.error);
        if (candidate.gain < best.gain) best = candidate;
    }
    best.inDoubt = !isGreater(rival, best.gain + best.error);
    return best;
}
