#pragma once

#include <cstdint>
#include <span>

#include "numeric/block.h"
#include "report/screens.h"

// The hierarchical log-linear models of an A x B x C table of counts, their expected tables and their
// effects. Cell (i, j, k) stands at (i b + j) c + k.

// A set of the three factors; also names a margin, summed over the factors that are not in it, and the u-term
// of these factors.
using FactorSet = unsigned;
constexpr FactorSet factorA = 1, factorB = 2, factorC = 4;
constexpr FactorSet allFactors = factorA | factorB | factorC;

// Whether factor f (0 A, 1 B, 2 C) is in a set.
constexpr bool hasFactor(FactorSet factors, Index f) {
    return (factors >> f & 1U) != 0;
}

// The u-terms in the order of reports: main effects, then interactions of two and of three factors.
constexpr Index uTermCount = 7;
constexpr FactorSet uTerms[uTermCount] = {factorA,           factorB,           factorC,   factorA | factorB,
                                          factorA | factorC, factorB | factorC, allFactors};

// How many levels A, B and C have.
struct ThreeWaySizes {
    Index levels[3];

    // How many cells the margin of some factors has.
    Index cells(FactorSet factors = allFactors) const;
};

// Calls visit(i, j, k) for the cells of the margin of some factors, in its order, with 0 for a factor that is
// summed over.
template <class Visit> void visitCells(const ThreeWaySizes& sizes, FactorSet factors, Visit visit) {
    const auto levels = [&](Index f) { return hasFactor(factors, f) ? sizes.levels[f] : 1; };
    const Index a = levels(0), b = levels(1), c = levels(2);
    for (Index i = 0; i < a; ++i) {
        for (Index j = 0; j < b; ++j) {
            for (Index k = 0; k < c; ++k) visit(i, j, k);
        }
    }
}

// The cells of a margin of a table by the indices of all three factors.
struct MarginView {
    const double* values;
    Index steps[3]; // 0 for a factor that is summed over

    Index place(Index i, Index j, Index k) const { return i * steps[0] + j * steps[1] + k * steps[2]; }
    double at(Index i, Index j, Index k) const { return values[place(i, j, k)]; }
};

// The sums of a table over each set of factors.
struct Margins {
    ThreeWaySizes sizes = {};
    const double* table = nullptr;
    Block<double> sums[allFactors]; // of each set but the whole

    [[nodiscard]] ErrorCode allocate(const ThreeWaySizes& tableSizes);
    void sum(const double* cells); // refers to the cells from then on
    MarginView view(FactorSet factors) const;
};

constexpr Index logLinearModelCount = 18;

// What the lists and reports show of each model, 43 characters; their index is the model's number less 1.
std::span<const char* const> logLinearModelTexts();

// Whether one of two models (list indices) has all effects of the other. False for what is no index.
bool areNested(Index first, Index second);

// The terms of a model (list index) that are part of no other one: their margins settle its expected table.
struct Generators {
    FactorSet sets[3];
    Index count = 0;
};
Generators generatorsOf(Index model);

// Whether the expected table of a model is a product of margins over margins: of all but the first one.
bool hasClosedForm(Index model);

// Cells less free parameters of a model (list index).
Index degreesOfFreedom(const ThreeWaySizes& sizes, Index model);

// When the iterative fitting ends: after so many cycles, or one that changes no cell by more than either of
// these.
struct FittingGoal {
    double change = 0.001;
    double share = 0.0; // of the cell
    Index mostCycles = PTRDIFF_MAX;
};

// Expected tables from the margins of the observed one. The first model is fitted by iterative proportional
// fitting (Deming and Stephan 1940) from a table of ones. Quotients with a denominator of 0 count 0.
struct ModelFitter {
    Block<double> previous; // cells
    Block<double> fitted;   // the largest two-way margin

    [[nodiscard]] ErrorCode allocate(const ThreeWaySizes& sizes);
    [[nodiscard]] ErrorCode fit(const Margins& observed, Index model, const FittingGoal& goal,
                                double* expected, const Stage& stage);
};

// G2 = 2 sum n ln(n / m); empty cells add nothing.
double likelihoodRatio(const std::int32_t* observed, const double* expected, Index cells);

// The u-terms of a table in effect coding and their standard errors, each in the cells of its margin.
struct UTermEstimates {
    Block<double> estimates[allFactors + 1]; // by FactorSet; the empty set has none
    Block<double> errors[allFactors + 1];

    // `interaction`: the three-factor term, too.
    [[nodiscard]] ErrorCode allocate(const ThreeWaySizes& sizes, bool interaction);
};

// From the margins of the cells' logarithms and of their variances (1 / count). A term is a contrast of the
// logarithms, whose weights are products of one factor for each of A, B and C: d - 1 / levels for a factor of
// the term (d is 1 in its level, else 0), 1 / levels for the others. The terms that are part of it come
// first.
void estimateUTerm(const Margins& logarithms, const Margins& variances, FactorSet term,
                   UTermEstimates& result);
