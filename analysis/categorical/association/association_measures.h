#pragma once

#include "data/categories.h"

// Measures of association of a two-way table of counts, at most 64 x 64. Counts and their products are 32-bit
// and wrap where this is said: kept so that reports stay comparable.

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

// Chi-square and the coefficients that are made of it. The products of totals behind the expected counts, and
// Cramer's min(rows - 1, columns - 1) N, wrap.
ChiSquareFamily chiSquareFamily(const ContingencyTable& table);

// Symmetric lambda (Goodman and Kruskal 1954): the share by which the best guess of either variable errs less
// when the other one is known.
double goodmanKruskalLambda(const ContingencyTable& table);

// Pairs of samples by the order of their rows and columns. The counts wrap.
struct OrderedPairs {
    std::int32_t concordant;
    std::int32_t discordant;
    std::int32_t tiedRow;    // in the row only
    std::int32_t tiedColumn; // in the column only
};

// A few operations a cell. `below` is scratch, one count for each column.
OrderedPairs countOrderedPairs(const ContingencyTable& table, std::int32_t* below);

// Gamma (Goodman and Kruskal 1954); the sum under the fraction wraps. Without untied pairs not a number.
double goodmanKruskalGamma(const OrderedPairs& pairs);

// Twice Kendall's tau-b: reports depend on the factor. The product under the root wraps, and may be negative
// then.
double twiceKendallTau(const OrderedPairs& pairs);
