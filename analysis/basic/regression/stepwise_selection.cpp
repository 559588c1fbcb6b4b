#include "analysis/basic/regression/stepwise_selection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "numeric/lu.h"

namespace {

// A candidate that the model explains but for this share is none.
constexpr double leastTolerance = 1e-10;

enum class Failure { recorded, silent };

// The selection under way: a model, its determination and what a step does to them.
class Selector {
public:
    Selector(const RegressionData& data, const RegressionOptions& options, StepwiseSelection& selection)
        : data_(data), options_(options), selection_(selection), aic_(aicOf(0.0, 0)) {}

    void startFull();

    // One test; true when it changed the model. False, too, once a code stands or the list of steps is full.
    bool tryEntry(Failure failure);
    bool tryRemoval(Failure failure);

    ErrorCode code() const { return code_; }
    std::int32_t modelSize() const { return selection_.count; }

private:
    double correlation(std::int32_t i, std::int32_t j) const {
        return data_.moments.correlation[Index{i} * data_.variables + j];
    }
    std::int32_t purpose() const { return data_.variables - 1; }
    bool isOver() const { return code_ != success || selection_.stepCount == selection_.steps.size(); }

    double aicOf(double determination, std::int32_t variables) const;
    double score(std::int32_t candidate) const;
    void move(std::int32_t variable, StepMark mark, double determination, double f, double aic);
    void keep(const SelectionStep& step) { selection_.steps[selection_.stepCount++] = step; }
    void invertModel();

    const RegressionData& data_;
    const RegressionOptions& options_;
    StepwiseSelection& selection_;
    double determination_ = 0.0;
    double aic_;
    ErrorCode code_ = success;
};

// Akaike (1974), with constant and variance counted as parameters.
double Selector::aicOf(double determination, std::int32_t variables) const {
    const double n = data_.samples;
    const double variance = data_.moments.covariance[data_.purpose() * data_.variables + data_.purpose()];
    return n * std::log(2.0 * std::numbers::pi * variance * (1.0 - determination)) + n +
           2.0 * (variables + 2);
}

// The determination of the model with one more variable, 0 for one that the model explains already.
double Selector::score(std::int32_t candidate) const {
    const Index k = selection_.count;
    double tolerance = 1.0;
    double residual = correlation(candidate, purpose());
    for (Index i = 0; i < k; ++i) {
        const double beside = correlation(candidate, selection_.variables[i]);
        double sum = 0.0;
        for (Index j = 0; j < k; ++j) {
            sum += selection_.inverse[i * k + j] * correlation(candidate, selection_.variables[j]);
        }
        tolerance -= beside * sum;
        residual -= beside * selection_.weights[i];
    }
    if (!(tolerance > leastTolerance)) return 0.0;
    return determination_ + residual * residual / tolerance;
}

void Selector::invertModel() {
    const Index k = selection_.count;
    copyMinor(data_.moments.correlation.data(), data_.variables, selection_.variables.data(),
              selection_.count, 1.0, selection_.matrix.data());
    double determinant = 0.0;
    code_ = MatrixInverse(selection_.count, selection_.count, selection_.matrix.data(),
                          selection_.inverse.data(), determinant);
    for (Index i = 0; i < k; ++i) {
        selection_.weights[i] = 0.0;
        for (Index j = 0; j < k; ++j) {
            selection_.weights[i] +=
                selection_.inverse[i * k + j] * correlation(selection_.variables[j], purpose());
        }
    }
}

void Selector::startFull() {
    for (std::int32_t v = 0; v < purpose(); ++v) {
        selection_.variables[v] = v;
        selection_.inModel[v] = 1;
    }
    selection_.count = purpose();
    std::copy_n(data_.moments.correlation.data(), selection_.matrix.size(), selection_.matrix.data());
    double determinant = 0.0;
    code_ = MatrixInverse(data_.variables, data_.variables, selection_.matrix.data(),
                          selection_.inverse.data(), determinant);
    if (code_ == success && determinant < 0.0) code_ = singularMatrix;
    if (code_ != success) return;
    determination_ = 1.0 - 1.0 / selection_.inverse[selection_.inverse.size() - 1];
    aic_ = aicOf(determination_, selection_.count);
    invertModel();
}

void Selector::move(std::int32_t variable, StepMark mark, double determination, double f, double aic) {
    std::int32_t* const first = selection_.variables.begin();
    if (mark == StepMark::in) {
        first[selection_.count++] = variable;
    } else {
        selection_.count =
            static_cast<std::int32_t>(std::remove(first, first + selection_.count, variable) - first);
    }
    selection_.inModel[variable] = mark == StepMark::in ? 1 : 0;
    determination_ = determination;
    aic_ = aic;
    keep({variable, mark, determination, f, aic});
    invertModel();
}

bool Selector::tryEntry(Failure failure) {
    if (isOver()) return false;
    double determination = 0.0;
    std::int32_t variable = -1;
    for (std::int32_t v = 0; v < purpose(); ++v) {
        if (selection_.inModel[v] != 0) continue;
        const double candidate = score(v);
        if (!(candidate > determination)) continue;
        determination = candidate;
        variable = v;
    }
    if (variable < 0) return false;

    const double freedom = data_.samples - selection_.count - 2;
    const double f = freedom * (determination - determination_) / (1.0 - determination);
    const double aic = aicOf(determination, selection_.count + 1);
    const bool better = options_.criterion == 1 ? f >= options_.fIn : aic < aic_;
    if (freedom > 0.0 && better && !std::isnan(f) && !std::isnan(aic)) {
        move(variable, StepMark::in, determination, f, aic);
        return code_ == success;
    }
    if (failure == Failure::recorded) keep({variable, StepMark::none, determination_, f, aic_});
    return false;
}

bool Selector::tryRemoval(Failure failure) {
    if (isOver() || selection_.count == 0) return false;
    const Index k = selection_.count;
    double determination = std::numeric_limits<double>::quiet_NaN();
    std::int32_t variable = selection_.variables[0];
    for (Index i = 0; i < k; ++i) {
        const double weight = selection_.weights[i];
        const double without = determination_ - weight * weight / selection_.inverse[i * k + i];
        if (!(without > determination) && !std::isnan(determination)) continue;
        determination = without;
        variable = selection_.variables[i];
    }

    const double freedom = data_.samples - selection_.count - 1;
    const double f = freedom * (determination_ - determination) / (1.0 - determination_);
    const double aic = aicOf(determination, selection_.count - 1);
    const bool better = options_.criterion == 1 ? f <= options_.fOut : aic < aic_;
    if (freedom > 0.0 && better && !std::isnan(f) && !std::isnan(aic)) {
        move(variable, StepMark::out, determination, f, aic);
        return code_ == success;
    }
    if (failure == Failure::recorded) keep({variable, StepMark::none, determination_, f, aic_});
    return false;
}

} // namespace

ErrorCode StepwiseSelection::allocate(std::int32_t allVariables) {
    const Index p = allVariables;
    return variables.allocate(p) | steps.allocate(2 * p + 1) | inModel.allocate(p) | matrix.allocate(p * p) |
           inverse.allocate(p * p) | weights.allocate(p);
}

ErrorCode selectVariables(const RegressionData& data, const RegressionOptions& options,
                          StepwiseSelection& selection) {
    Selector selector(data, options, selection);
    switch (options.method) {
    case 1:
        while (selector.tryEntry(Failure::recorded)) {
            if (selector.modelSize() < 2) continue;
            while (selector.tryRemoval(Failure::silent)) {
            }
        }
        break;
    case 2:
        selector.startFull();
        while (selector.tryRemoval(Failure::recorded)) {
            while (selector.tryEntry(Failure::silent)) {
            }
        }
        break;
    case 3:
        while (selector.tryEntry(Failure::recorded)) {
        }
        break;
    default:
        selector.startFull();
        while (selector.tryRemoval(Failure::recorded)) {
        }
        break;
    }
    return selector.code();
}
