#include "analysis/basic/regression/stepwise_selection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

#include "analysis/basic/regression/least_squares_regression.h"
#include "numeric/lu.h"

namespace {

// A candidate that the model explains but for this share is none.
constexpr double leastTolerance = 1e-10;

enum class Failure { recorded, silent };

// The selection under way: a model, its determination and what a step does to them.
class Selector {
public:
    Selector(const RegressionData& data, const RegressionOptions& options, StepwiseSelection& selection,
             const Stage& stage)
        : data_(data), options_(options), selection_(selection), stage_(stage), aic_(aicOf(0.0, 0)) {}

    void startFull(const Numerics& numerics);

    // One test; true when it changed the model. False, too, once a code stands or the list of steps is full.
    bool tryEntry(Failure failure);
    bool tryRemoval(Failure failure);

    ErrorCode code() const { return code_; }
    Index modelSize() const { return selection_.count; }

private:
    const Matrix& correlation() const { return data_.moments.correlation; }
    bool isOver() const { return code_ != success || selection_.stepCount == selection_.steps.size(); }
    // Degrees of freedom of the residuals of a model with so many variables.
    double freedomOf(Index variables) const { return static_cast<double>(data_.samples - variables - 1); }

    double aicOf(double determination, Index variables) const;
    double score(Index candidate) const;
    void move(Index variable, StepMark mark, double determination, double f, double aic);
    void keep(const SelectionStep& step) { selection_.steps[selection_.stepCount++] = step; }
    void invertModel();
    void invertFull();
    void solveFull();

    const RegressionData& data_;
    const RegressionOptions& options_;
    StepwiseSelection& selection_;
    const Stage& stage_;
    double determination_ = 0.0;
    double aic_;
    ErrorCode code_ = success;
};

// Akaike (1974), with constant and variance counted as parameters.
double Selector::aicOf(double determination, Index variables) const {
    const double n = data_.samples;
    const double variance = data_.moments.covariance(data_.purpose(), data_.purpose());
    return n * std::log(2.0 * std::numbers::pi * variance * (1.0 - determination)) + n +
           2.0 * static_cast<double>(variables + 2);
}

// The determination of the model with one more variable, 0 for one that the model explains already.
double Selector::score(Index candidate) const {
    const Index k = selection_.count;
    const Index* const variables = selection_.variables.data();
    const double* const correlations = correlation().row(candidate);
    double tolerance = 1.0;
    double residual = correlations[data_.purpose()];
    for (Index i = 0; i < k; ++i) {
        const double beside = correlations[variables[i]];
        const double* const inverse = selection_.inverse.row(i);
        double sum = 0.0;
        for (Index j = 0; j < k; ++j) sum += inverse[j] * correlations[variables[j]];
        tolerance -= beside * sum;
        residual -= beside * selection_.weights[i];
    }
    if (!(tolerance > leastTolerance)) return 0.0;
    return determination_ + residual * residual / tolerance;
}

void Selector::invertModel() {
    const Index k = selection_.count;
    const Index stride = selection_.matrix.columns();
    copyMinor(correlation(), selection_.variables.data(), k, 1.0, selection_.matrix.data(), stride);
    double determinant = 0.0;
    code_ = MatrixInverse(k, stride, selection_.matrix.data(), selection_.inverse.data(), determinant);
    for (Index i = 0; i < k; ++i) {
        const double* const inverse = selection_.inverse.row(i);
        double weight = 0.0;
        for (Index j = 0; j < k; ++j) {
            weight += inverse[j] * correlation()(selection_.variables[j], data_.purpose());
        }
        selection_.weights[i] = weight;
    }
}

// Through the inverse of the correlations.
void Selector::invertFull() {
    const Index k = selection_.count;
    std::copy(correlation().begin(), correlation().end(), selection_.matrix.begin());
    double determinant = 0.0;
    code_ = MatrixInverse(selection_.matrix, selection_.inverse, determinant);
    if (code_ == success && determinant < 0.0) code_ = singularMatrix;
    if (code_ != success) return;
    determination_ = 1.0 - 1.0 / selection_.inverse(k, k);
    invertModel();
}

// By least squares, which tells nearly dependent columns from dependent ones.
void Selector::solveFull() {
    LeastSquares full;
    code_ = fitColumns(data_, selection_.variables.data(), selection_.count, full);
    if (code_ != success) return;
    const Block<double>& sds = data_.moments.sds;
    determination_ = 1.0 - full.residualSum / full.totalSum;
    for (Index i = 0; i < selection_.count; ++i) {
        selection_.weights[i] = full.coefficients[i] * sds[i] / sds[data_.purpose()];
        for (Index j = 0; j < selection_.count; ++j) {
            selection_.inverse(i, j) = full.inverse(i, j) * sds[i] * sds[j] * data_.samples;
        }
    }
}

void Selector::startFull(const Numerics& numerics) {
    const Index k = selection_.count = data_.purpose();
    std::iota(selection_.variables.begin(), selection_.variables.begin() + k, Index{0});
    std::fill_n(selection_.inModel.begin(), k, true);
    if (numerics.textbook) {
        solveFull();
    } else {
        invertFull();
    }
    if (code_ == success) aic_ = aicOf(determination_, k);
}

void Selector::move(Index variable, StepMark mark, double determination, double f, double aic) {
    Index* const first = selection_.variables.begin();
    if (mark == StepMark::in) {
        first[selection_.count++] = variable;
    } else {
        selection_.count = std::remove(first, first + selection_.count, variable) - first;
    }
    selection_.inModel[variable] = mark == StepMark::in;
    determination_ = determination;
    aic_ = aic;
    keep({variable, mark, determination, f, aic});
    code_ = stage_.advance(selection_.stepCount, selection_.steps.size());
    if (code_ == success) invertModel();
}

bool Selector::tryEntry(Failure failure) {
    if (isOver()) return false;
    double determination = 0.0;
    Index variable = -1;
    for (Index v = 0; v < data_.purpose(); ++v) {
        if (selection_.inModel[v]) continue;
        const double candidate = score(v);
        if (!(candidate > determination)) continue;
        determination = candidate;
        variable = v;
    }
    if (variable < 0) return false;

    const double freedom = freedomOf(selection_.count + 1);
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
    double determination = std::numeric_limits<double>::quiet_NaN();
    Index variable = selection_.variables[0];
    for (Index i = 0; i < selection_.count; ++i) {
        const double weight = selection_.weights[i];
        const double without = determination_ - weight * weight / selection_.inverse(i, i);
        if (!(without > determination) && !std::isnan(determination)) continue;
        determination = without;
        variable = selection_.variables[i];
    }

    const double freedom = freedomOf(selection_.count);
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

ErrorCode StepwiseSelection::allocate(Index allVariables) {
    const Index p = allVariables;
    return variables.allocate(p) | steps.allocate(2 * p + 1) | inModel.allocate(p) | matrix.allocate(p, p) |
           inverse.allocate(p, p) | weights.allocate(p);
}

ErrorCode selectVariables(const Numerics& numerics, const RegressionData& data,
                          const RegressionOptions& options, StepwiseSelection& selection,
                          const Stage& stage) {
    Selector selector(data, options, selection, stage);
    switch (options.method) {
    case 1:
        while (selector.tryEntry(Failure::recorded)) {
            if (selector.modelSize() < 2) continue;
            while (selector.tryRemoval(Failure::silent)) {
            }
        }
        break;
    case 2:
        selector.startFull(numerics);
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
        selector.startFull(numerics);
        while (selector.tryRemoval(Failure::recorded)) {
        }
        break;
    }
    return selector.code();
}
