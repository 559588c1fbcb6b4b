#pragma once

#include "numeric/block.h"

// Sums over the groups of t equal values of a column, t from 1 on (which add nothing).
struct TieSums {
    double pairs = 0.0;    // t (t - 1)
    double triples = 0.0;  // t (t - 1) (t - 2)
    double weighted = 0.0; // t (t - 1) (2 t + 5)

    void add(Index t);
};

// The variance of Kendall's S, concordant less discordant pairs, of two independent columns of n >= 2 values
// with ties (Kendall 1970). 0 where all values of a column are equal.
double kendallVariance(Index n, const TieSums& first, const TieSums& second);
