#pragma once

#include "analysis/basic/regression/regression.h"

// A candidate that the model explains but for this share is none.
constexpr double leastTolerance = 1e-10;

// A model of some of P variables, the purpose variable included, with what tests of it need.
struct SelectedModel {
    Block<Index> variables; // in model order
    Index count = 0;
    Block<bool> inModel; // by column

    // P x P, of which a model of count variables has the first count rows and columns.
    Matrix matrix;         // scratch, or what a SweptModel keeps
    Matrix inverse;        // of the correlations of the model's variables
    Block<double> weights; // their standardized coefficients
    Block<double> column;  // P; scratch

    // Zero-filled arrays; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index allVariables);
};

// What a test of the selection finds: the variable to move, and by how much that changes the determination.
struct SelectionGain {
    Index variable = -1;  // none
    double gain = 0.0;    // not below 0
    double error = 0.0;   // of the gain, by rounding
    bool inDoubt = false; // another variable, or none, may be the one
};

// The correlations of all variables, swept on those of the model: a test reads two of them for each variable,
// and a step sweeps once, some P^2 / 2 operations. Rounding adds up from step to step, so each number comes
// with what it may be wrong by, and where that decides, the inverse has to be made anew.
class SweptModel {
public:
    SweptModel(const RegressionData& data, SelectedModel& model) : data_(data), model_(model) {}

    // From the inverse and the weights of the model, in place of its scratch matrix; false where these
    // are wrong, of a singular model, or so large that updates would lose too much.
    bool build();
    // Where the scratch matrix was used for something else.
    void discard() { isCurrent_ = false; }
    bool isCurrent() const { return isCurrent_; }

    // After the variable has entered the model or left it.
    void update(Index variable);

    SelectionGain largestEntry() const;
    SelectionGain leastRemoval() const;

private:
    double& element(Index i, Index j) const { return model_.matrix(i < j ? j : i, i < j ? i : j); }
    bool isSound() const;
    double rounding() const;
    void noteInflations();

    const RegressionData& data_;
    SelectedModel& model_;
    bool isCurrent_ = false;
    double inflation_ = 1.0; // the largest diagonal element of the inverse since build
};
