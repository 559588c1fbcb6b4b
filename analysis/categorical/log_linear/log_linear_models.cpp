#include "analysis/categorical/log_linear/log_linear_models.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* texts[logLinearModelCount] = {
    "u+uA(i)+uB(j)+uC(k)+uAB(ij)+uAC(ik)+uBC(jk)", "u+uA(i)+uB(j)+uC(k)+uAB(ij)+uAC(ik)        ",
    "u+uA(i)+uB(j)+uC(k)+uAB(ij)        +uBC(jk)", "u+uA(i)+uB(j)+uC(k)        +uAC(ik)+uBC(jk)",
    "u+uA(i)+uB(j)+uC(k)+uAB(ij)                ", "u+uA(i)+uB(j)+uC(k)        +uAC(ik)        ",
    "u+uA(i)+uB(j)+uC(k)                +uBC(jk)", "u+uA(i)+uB(j)+uC(k)                        ",
    "u+uA(i)+uB(j)      +uAB(ij)                ", "u+uA(i)      +uC(k)        +uAC(ik)        ",
    "u      +uB(j)+uC(k)                +uBC(jk)", "u+uA(i)+uB(j)                              ",
    "u+uA(i)      +uC(k)                        ", "u      +uB(j)+uC(k)                        ",
    "u+uA(i)                                    ", "u      +uB(j)                              ",
    "u            +uC(k)                        ", "u                                          ",
};

// The effects of each model, a bit for each of uTerms from A = 0x40 on.
constexpr unsigned effects[logLinearModelCount] = {0x7e, 0x7c, 0x7a, 0x76, 0x78, 0x74, 0x72, 0x70, 0x68,
                                                   0x54, 0x32, 0x60, 0x50, 0x30, 0x40, 0x20, 0x10, 0x00};

bool hasEffect(Index model, Index term) {
    return (effects[model] & (0x40U >> term)) != 0;
}

double quotient(double numerator, double denominator) {
    return denominator == 0.0 ? 0.0 : numerator / denominator;
}

// A decomposable model: the product of the generators' margins over that of what each shares with those
// before it, spread evenly over the factors that have no effect (Goodman 1971).
void fitClosedForm(const Margins& observed, const Generators& generators, double* expected) {
    MarginView numerators[3], denominators[3];
    FactorSet seen = 0;
    for (Index g = 0; g < generators.count; ++g) {
        numerators[g] = observed.view(generators.sets[g]);
        denominators[g] = observed.view(generators.sets[g] & seen);
        seen |= generators.sets[g];
    }
    const double spread = static_cast<double>(observed.sizes.cells(allFactors & ~seen));
    const double total = observed.sums[0][0];
    visitCells(observed.sizes, allFactors, [&](Index i, Index j, Index k) {
        double numerator = generators.count == 0 ? total : numerators[0].at(i, j, k);
        double denominator = spread;
        for (Index g = 1; g < generators.count; ++g) {
            numerator *= numerators[g].at(i, j, k);
            denominator *= denominators[g].at(i, j, k);
        }
        *expected++ = quotient(numerator, denominator);
    });
}

// Scales a table to one of the observed margins.
void scaleToMargin(const Margins& observed, FactorSet factors, double* table, double* fitted) {
    const Index count = observed.sizes.cells(factors);
    std::fill_n(fitted, count, 0.0);
    const MarginView at = observed.view(factors);
    const double* value = table;
    visitCells(observed.sizes, allFactors,
               [&](Index i, Index j, Index k) { fitted[at.place(i, j, k)] += *value++; });
    for (Index m = 0; m < count; ++m) fitted[m] = quotient(at.values[m], fitted[m]);
    visitCells(observed.sizes, allFactors,
               [&](Index i, Index j, Index k) { *table++ *= fitted[at.place(i, j, k)]; });
}

// Whether a cell changed by more than the goal allows; a change that is not a number ends the fitting.
bool isChanging(const FittingGoal& goal, const double* previous, const double* table, Index cells) {
    bool changing = false;
    for (Index m = 0; m < cells; ++m) {
        const double change = std::fabs(table[m] - previous[m]);
        if (std::isnan(change)) return false;
        changing = changing || change > std::max(goal.change, goal.share * table[m]);
    }
    return changing;
}

double squared(double x) {
    return x * x;
}

double meanOf(const Margins& margins, FactorSet factors, Index i, Index j, Index k) {
    const double summed = static_cast<double>(margins.sizes.cells(allFactors & ~factors));
    return margins.view(factors).at(i, j, k) / summed;
}

// The squares of a weight's factors are d (1 - 2 / levels) + 1 / levels^2 and 1 / levels^2: the variance is a
// sum over margins with coefficients that are not negative, so that nothing cancels.
double termVariance(const Margins& variances, FactorSet term, Index i, Index j, Index k) {
    double sum = 0.0;
    for (FactorSet part = 0; part <= allFactors; ++part) {
        if ((part & ~term) != 0) continue;
        double weight = 1.0;
        for (Index f = 0; f < 3; ++f) {
            const double levels = static_cast<double>(variances.sizes.levels[f]);
            weight *= hasFactor(part, f) ? 1.0 - 2.0 / levels : 1.0 / squared(levels);
        }
        // A variance that is infinite counts only where it has a weight.
        if (weight != 0.0) sum += weight * variances.view(part).at(i, j, k);
    }
    return sum;
}

} // namespace

Index ThreeWaySizes::cells(FactorSet factors) const {
    Index count = 1;
    for (Index f = 0; f < 3; ++f) {
        if (hasFactor(factors, f)) count *= levels[f];
    }
    return count;
}

ErrorCode Margins::allocate(const ThreeWaySizes& tableSizes) {
    sizes = tableSizes;
    ErrorCode code = success;
    for (FactorSet factors = 0; factors < allFactors; ++factors) {
        code |= sums[factors].allocate(sizes.cells(factors));
    }
    return code;
}

void Margins::sum(const double* cells) {
    table = cells;
    for (Block<double>& margin : sums) std::fill(margin.begin(), margin.end(), 0.0);
    constexpr FactorSet pairAB = factorA | factorB, pairAC = factorA | factorC, pairBC = factorB | factorC;
    const MarginView ab = view(pairAB), ac = view(pairAC), bc = view(pairBC);
    const auto [a, b, c] = sizes.levels;
    for (Index i = 0; i < a; ++i) {
        for (Index j = 0; j < b; ++j) {
            for (Index k = 0; k < c; ++k, ++cells) {
                sums[pairAB][ab.place(i, j, k)] += *cells;
                sums[pairAC][ac.place(i, j, k)] += *cells;
                sums[pairBC][bc.place(i, j, k)] += *cells;
            }
            sums[factorA][i] += ab.at(i, j, 0);
            sums[factorB][j] += ab.at(i, j, 0);
        }
        for (Index k = 0; k < c; ++k) sums[factorC][k] += ac.at(i, 0, k);
        sums[0][0] += sums[factorA][i];
    }
}

MarginView Margins::view(FactorSet factors) const {
    MarginView margin = {factors == allFactors ? table : sums[factors].data(), {}};
    Index step = 1;
    for (Index f = 2; f >= 0; --f) {
        if (!hasFactor(factors, f)) continue;
        margin.steps[f] = step;
        step *= sizes.levels[f];
    }
    return margin;
}

std::span<const char* const> logLinearModelTexts() {
    return texts;
}

bool areNested(Index first, Index second) {
    const Index smaller = std::max(first, second), larger = std::min(first, second);
    return larger >= 0 && smaller < logLinearModelCount && (effects[smaller] & ~effects[larger]) == 0;
}

Generators generatorsOf(Index model) {
    Generators generators;
    for (Index term = 0; term < uTermCount; ++term) {
        if (!hasEffect(model, term)) continue;
        bool maximal = true;
        for (Index other = term + 1; other < uTermCount; ++other) {
            if (hasEffect(model, other) && (uTerms[term] & ~uTerms[other]) == 0) maximal = false;
        }
        if (maximal) generators.sets[generators.count++] = uTerms[term];
    }
    return generators;
}

bool hasClosedForm(Index model) {
    return model != 0;
}

Index degreesOfFreedom(const ThreeWaySizes& sizes, Index model) {
    Index parameters = 1;
    for (Index term = 0; term < uTermCount; ++term) {
        if (!hasEffect(model, term)) continue;
        Index count = 1;
        for (Index f = 0; f < 3; ++f) {
            if (hasFactor(uTerms[term], f)) count *= sizes.levels[f] - 1;
        }
        parameters += count;
    }
    return sizes.cells() - parameters;
}

ErrorCode ModelFitter::allocate(const ThreeWaySizes& sizes) {
    Index largest = 0;
    for (const FactorSet pair : {uTerms[3], uTerms[4], uTerms[5]}) {
        largest = std::max(largest, sizes.cells(pair));
    }
    return previous.allocate(sizes.cells()) | fitted.allocate(largest);
}

ErrorCode ModelFitter::fit(const Margins& observed, Index model, const FittingGoal& goal, double* expected,
                           const Stage& stage) {
    const Generators generators = generatorsOf(model);
    if (hasClosedForm(model)) {
        fitClosedForm(observed, generators, expected);
        return success;
    }
    const Index cells = observed.sizes.cells();
    std::fill_n(expected, cells, 1.0);
    Index cycles = 0;
    do {
        const ErrorCode code = stage.advance(cycles);
        if (code != success) return code;
        std::copy_n(expected, cells, previous.data());
        for (const FactorSet pair : generators.sets) scaleToMargin(observed, pair, expected, fitted.data());
    } while (++cycles < goal.mostCycles && isChanging(goal, previous.data(), expected, cells));
    return success;
}

double likelihoodRatio(const std::int32_t* observed, const double* expected, Index cells) {
    double sum = 0.0;
    for (Index m = 0; m < cells; ++m) {
        if (observed[m] > 0) sum += observed[m] * std::log(observed[m] / expected[m]);
    }
    return 2.0 * sum;
}

ErrorCode UTermEstimates::allocate(const ThreeWaySizes& sizes, bool interaction) {
    ErrorCode code = success;
    for (FactorSet term = 1; term < allFactors + (interaction ? 1U : 0U); ++term) {
        code |= estimates[term].allocate(sizes.cells(term)) | errors[term].allocate(sizes.cells(term));
    }
    return code;
}

void estimateUTerm(const Margins& logarithms, const Margins& variances, FactorSet term,
                   UTermEstimates& result) {
    const ThreeWaySizes& sizes = logarithms.sizes;
    Index at = 0;
    visitCells(sizes, term, [&](Index i, Index j, Index k) {
        double estimate = meanOf(logarithms, term, i, j, k);
        for (Index t = 0; uTerms[t] != term; ++t) { // less the terms that are part of it
            if ((uTerms[t] & ~term) != 0) continue;
            estimate -= result.estimates[uTerms[t]][logarithms.view(uTerms[t]).place(i, j, k)];
        }
        result.estimates[term][at] = estimate - logarithms.sums[0][0] / static_cast<double>(sizes.cells());
        result.errors[term][at++] = std::sqrt(termVariance(variances, term, i, j, k));
    });
}
