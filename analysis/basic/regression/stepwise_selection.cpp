#include "analysis/basic/regression/stepwise_selection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

#include "analysis/basic/regression/least_squares_regression.h"
#include "numeric/lu.h"

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();
// Of a determination, which is below 1.
constexpr double rounding = 0.5 * epsilon;
// A decision that is closer to its limit, as a share of it, is made from a new inverse.
constexpr double closeness = 1e-8;

// Whether an error of that size can change a digit, or the sign, of the number in print.
bool canShow(double value, double error) {
    const double scaled = std::fabs(value) * std::pow(10.0, stepDecimals);
    const double slack = error * std::pow(10.0, stepDecimals) + 8.0 * epsilon * scaled;
    return !(scaled < 1e12 && scaled > slack && std::fabs(scaled - std::floor(scaled) - 0.5) > slack);
}

// What the numbers of a test may differ by from those of a selection without any update.
struct SelectionErrors {
    double determination = 0.0;
    double f = 0.0;
    double aic = 0.0;
};

// A test of the selection: the variable, none when negative, what is done with it, and the model after that.
struct SelectionTest {
    Index variable = -1;
    StepMark mark = StepMark::none;
    double determination = 0.0;
    double f = 0.0;
    double aic = 0.0;
    SelectionErrors errors = {};
    bool isOpen = false; // whether the errors may change what is done
};

enum class Failure { recorded, silent };

// The selection under way: a model, its determination and what a step does to them.
class Selector {
public:
    Selector(const RegressionData& data, const RegressionOptions& options, StepwiseSelection& selection,
             const Stage& stage, Index smallModel, Index exactSteps)
        : data_(data), options_(options), selection_(selection), stage_(stage), smallModel_(smallModel),
          exactSteps_(exactSteps), swept_(data, selection), aic_(aicOf(0.0, 0)) {}

    ErrorCode select(const Numerics& numerics);
    // Whether the selection stopped because the updates before leave open what to do or to print.
    bool isLost() const { return isLost_; }

private:
    void startFull(const Numerics& numerics);

    // One test; true when it changed the model. False, too, once a code stands or the list of steps is full.
    bool tryEntry(Failure failure);
    bool tryRemoval(Failure failure);

    const Matrix& correlation() const { return data_.moments.correlation; }
    bool isOver() const {
        return code_ != success || isLost_ || selection_.stepCount == selection_.steps.size();
    }

    double aicOf(double determination, Index variables) const;
    double score(Index candidate) const;
    bool isUpdated();
    SelectionTest testEntry();
    SelectionTest testRemoval();
    SelectionTest judge(StepMark mark, const SelectionGain& found, double determination) const;
    bool isDecided(const SelectionTest& test, double limit, double share) const;
    bool canChangePrint(const SelectionTest& test) const;
    bool isOpen(const SelectionTest& test, double limit, double second) const;
    bool apply(const SelectionTest& test, Failure failure);
    void move(const SelectionTest& test);
    void keep(const SelectionStep& step) { selection_.steps[selection_.stepCount++] = step; }
    void invertModel();
    void invertFull();
    void solveFull();

    const RegressionData& data_;
    const RegressionOptions& options_;
    StepwiseSelection& selection_;
    const Stage& stage_;
    Index smallModel_;
    Index exactSteps_; // the first ones, which are made without updates
    SweptModel swept_;
    bool isInverted_ = false; // whether inverse and weights are those of the model
    double determination_ = 0.0;
    double error_ = 0.0; // of the determination, by the updates so far
    double aic_;
    bool isLost_ = false;
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
    swept_.discard();
    copyMinor(correlation(), selection_.variables.data(), k, 1.0, selection_.matrix.data(), stride);
    double determinant = 0.0;
    code_ = MatrixInverse(k, stride, selection_.matrix.data(), selection_.inverse.data(), determinant);
    if (code_ != success) return;
    isInverted_ = true;
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
    code_ = invertColumn(k + 1, k + 1, selection_.matrix.data(), k, selection_.column.data(), determinant);
    if (code_ == success && determinant < 0.0) code_ = singularMatrix;
    if (code_ != success) return;
    determination_ = 1.0 - 1.0 / selection_.column[k];
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
    isInverted_ = true;
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

// Whether swept_ is that of the model; it is made where that is worth its while.
bool Selector::isUpdated() {
    if (selection_.stepCount < exactSteps_ || selection_.count < smallModel_) return false;
    if (swept_.isCurrent()) return true;
    if (!isInverted_) invertModel();
    return code_ == success && swept_.build();
}

// The test of a variable that would enter, or leave, a model, which would have the determination then.
SelectionTest Selector::judge(StepMark mark, const SelectionGain& found, double determination) const {
    const bool enters = mark == StepMark::in;
    const Index smaller = selection_.count - (enters ? 0 : 1);
    const double freedom = data_.freedom(smaller + 1);
    const double more = enters ? determination : determination_;
    const double less = enters ? determination_ : determination;
    const double f = freedom * (more - less) / (1.0 - more);
    const double aic = aicOf(determination, enters ? smaller + 1 : smaller);
    const bool passes =
        options_.criterion == 1 ? (enters ? f >= options_.fIn : f <= options_.fOut) : aic < aic_;
    const bool moves = freedom > 0.0 && passes && !std::isnan(f) && !std::isnan(aic);
    SelectionTest test = {found.variable, moves ? mark : StepMark::none, determination, f, aic};
    if (found.error == 0.0 && error_ == 0.0) return test;
    const double error = std::hypot(error_, found.error + rounding);
    test.errors = {.determination = error,
                   .f = (freedom * (found.error + rounding) + std::fabs(f) * error) / std::fabs(1.0 - more),
                   .aic = error * data_.samples / std::fabs(1.0 - determination)};
    return test;
}

// Whether a test of F, or of the AIC, comes out the same for all values within the errors and within a share
// of the limit.
bool Selector::isDecided(const SelectionTest& test, double limit, double share) const {
    return options_.criterion == 1
               ? std::fabs(test.f - limit) > share * std::fabs(limit) + test.errors.f
               : std::fabs(test.aic - aic_) > share * std::fabs(aic_) + 2.0 * test.errors.aic;
}

// Whether what earlier updates did to the determination may decide on a test of a new inverse. `second` is
// the determination of the variable that came next.
bool Selector::isOpen(const SelectionTest& test, double limit, double second) const {
    return error_ > 0.0 &&
           (!isDecided(test, limit, 0.0) || std::fabs(test.determination - second) <= 4.0 * epsilon);
}

// A test that fails leaves determination and AIC as they were printed before.
bool Selector::canChangePrint(const SelectionTest& test) const {
    const SelectionErrors& errors = test.errors;
    if (errors.determination == 0.0) return false;
    return canShow(test.f, errors.f) ||
           (test.mark != StepMark::none &&
            (canShow(test.determination, errors.determination) || canShow(test.aic, errors.aic)));
}

SelectionTest Selector::testEntry() {
    if (isUpdated()) {
        const SelectionGain found = swept_.largestEntry();
        if (!found.inDoubt && found.variable < 0) return {};
        const SelectionTest test = judge(StepMark::in, found, determination_ + found.gain);
        if (!found.inDoubt && isDecided(test, options_.fIn, closeness) && !canChangePrint(test)) return test;
    }
    if (code_ == success && !isInverted_) invertModel();
    if (code_ != success) return {};
    double determination = 0.0, second = 0.0;
    Index variable = -1;
    for (Index v = 0; v < data_.purpose(); ++v) {
        if (selection_.inModel[v]) continue;
        const double candidate = score(v);
        second = std::max(second, std::min(candidate, determination));
        if (!(candidate > determination)) continue;
        determination = candidate;
        variable = v;
    }
    if (variable < 0) return {};
    SelectionTest test = judge(StepMark::in, {.variable = variable}, determination);
    test.isOpen = isOpen(test, options_.fIn, second);
    return test;
}

SelectionTest Selector::testRemoval() {
    if (isUpdated()) {
        const SelectionGain found = swept_.leastRemoval();
        const SelectionTest test = judge(StepMark::out, found, determination_ - found.gain);
        if (!found.inDoubt && isDecided(test, options_.fOut, closeness) && !canChangePrint(test)) return test;
    }
    if (code_ == success && !isInverted_) invertModel();
    if (code_ != success) return {};
    double determination = std::numeric_limits<double>::quiet_NaN(), second = determination;
    Index variable = selection_.variables[0];
    for (Index i = 0; i < selection_.count; ++i) {
        const double weight = selection_.weights[i];
        const double without = determination_ - weight * weight / selection_.inverse(i, i);
        second = std::fmax(second, std::fmin(without, determination));
        if (!(without > determination) && !std::isnan(determination)) continue;
        determination = without;
        variable = selection_.variables[i];
    }
    SelectionTest test = judge(StepMark::out, {.variable = variable}, determination);
    test.isOpen = isOpen(test, options_.fOut, second);
    return test;
}

void Selector::move(const SelectionTest& test) {
    const bool updates = isUpdated();
    Index* const first = selection_.variables.begin();
    if (test.mark == StepMark::in) {
        first[selection_.count++] = test.variable;
    } else {
        selection_.count = std::remove(first, first + selection_.count, test.variable) - first;
    }
    selection_.inModel[test.variable] = test.mark == StepMark::in;
    determination_ = test.determination;
    error_ = test.errors.determination;
    aic_ = test.aic;
    isInverted_ = false;
    if (updates) swept_.update(test.variable);
}

// Makes the move of a test, or keeps the test alone. True when the model changed.
bool Selector::apply(const SelectionTest& test, Failure failure) {
    if (test.variable < 0) return false;
    const bool moves = test.mark != StepMark::none;
    const bool isShown = moves || failure == Failure::recorded;
    isLost_ = test.isOpen || (isShown && canChangePrint(test));
    if (isLost_ || !isShown) return false;
    if (moves) move(test);
    keep({test.variable, test.mark, determination_, test.f, aic_});
    if (moves) code_ = stage_.advance(selection_.stepCount, selection_.steps.size());
    return moves && code_ == success;
}

bool Selector::tryEntry(Failure failure) {
    return !isOver() && apply(testEntry(), failure);
}

bool Selector::tryRemoval(Failure failure) {
    return !isOver() && selection_.count > 0 && apply(testRemoval(), failure);
}

ErrorCode Selector::select(const Numerics& numerics) {
    switch (options_.method) {
    case 1:
        while (tryEntry(Failure::recorded)) {
            if (selection_.count < 2) continue;
            while (tryRemoval(Failure::silent)) {
            }
        }
        break;
    case 2:
        startFull(numerics);
        while (tryRemoval(Failure::recorded)) {
            while (tryEntry(Failure::silent)) {
            }
        }
        break;
    case 3:
        while (tryEntry(Failure::recorded)) {
        }
        break;
    default:
        startFull(numerics);
        while (tryRemoval(Failure::recorded)) {
        }
        break;
    }
    return code_;
}

} // namespace

ErrorCode StepwiseSelection::allocate(Index allVariables) {
    return SelectedModel::allocate(allVariables) | steps.allocate(2 * allVariables + 1);
}

ErrorCode selectVariables(const Numerics& numerics, const RegressionData& data,
                          const RegressionOptions& options, StepwiseSelection& selection, const Stage& stage,
                          const UpdateRule& rule) {
    // Where an update leaves something open, the steps up to that are made again without any.
    constexpr int mostReplays = 4;
    const Index allSteps = selection.steps.size();
    Index exactSteps = rule.updates ? 0 : allSteps;
    for (int replays = 1;; ++replays) {
        Selector selector(data, options, selection, stage, rule.smallModel, exactSteps);
        const ErrorCode code = selector.select(numerics);
        if (!selector.isLost()) return code;
        exactSteps = replays < mostReplays ? selection.stepCount + 1 : allSteps;
        selection.count = selection.stepCount = 0;
        std::fill(selection.inModel.begin(), selection.inModel.end(), false);
    }
}
