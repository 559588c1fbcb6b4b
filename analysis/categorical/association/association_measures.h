#pragma once

#include "data/categories.h"

// Measures of association of a two-way table of counts, at most 64 x 64. Count is what pairs are counted in
// and totals are multiplied as: std::int32_t, where both wrap, which is kept so that reports stay comparable,
// or std::int64_t, where no count of pairs of 2^31 samples does, and products are doubles.

// The table of two variables, a block within the cross table of all categories.
struct ContingencyTable {
    const std::int32_t* counts; // row a begins at counts[a * stride]
    Index stride;
    const std::int32_t* rowTotals;
    const std::int32_t* columnTotals;
    std::int32_t rows;
    std::int32_t columns;
    std::int32_t samples;
};

struct ChiSquareFamily {
    double chiSquare;
    double phi;         // root mean square contingency
    double contingency; // Pearson's coefficient C
    double cramer;      // V
    double tschuprow;   // T
};

// Chi-square and the coefficients that are made of it. Products are those of totals behind the expected
// counts, and Cramer's min(rows - 1, columns - 1) N.
template <class Count> ChiSquareFamily chiSquareFamily(const ContingencyTable& table);

// Symmetric lambda (Goodman and Kruskal 1954): the share by which the best guess of either variable errs less
// when the other one is known.
double goodmanKruskalLambda(const ContingencyTable& table);

// Pairs of samples by the order of their rows and columns.
template <class Count> struct OrderedPairs {
    Count concordant;
    Count discordant;
    Count tiedRow;    // in the row only
    Count tiedColumn; // in the column only
};

// A few operations a cell. `below` is scratch, one count for each column.
template <class Count>
OrderedPairs<Count> countOrderedPairs(const ContingencyTable& table, std::int32_t* below);

// Gamma (Goodman and Kruskal 1954). Without untied pairs not a number.
template <class Count> double goodmanKruskalGamma(const OrderedPairs<Count>& pairs);

// Kendall's tau-b.
double kendallTauB(const OrderedPairs<std::int64_t>& pairs);

// Twice tau-b: reports depend on the factor. The product under the root wraps, and may be negative then.
double twiceKendallTau(const OrderedPairs<std::int32_t>& pairs);
