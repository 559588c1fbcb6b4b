#pragma once

#include "data/data_set.h"
#include "numeric/numerics.h"
#include "report/screens.h"

// Rank correlations of all pairs of the variables. The pairs are numbered (1,2), (1,3), ... (2,3), ... and
// every array below has an item for each.

struct SpearmanTable {
    Block<double> d;  // sum of squared rank differences
    Block<double> zd; // of d, from its normal approximation
    Block<double> pd;
    Block<double> rs;
    Block<double> pr; // of rs, from Student's t

    [[nodiscard]] ErrorCode allocate(Index pairs);
};

struct KendallTable {
    Block<double> tau;
    Block<double> z;
    Block<double> prob;
    bool deviates = false; // a z from that whose variance knows the ties

    [[nodiscard]] ErrorCode allocate(Index pairs);
};

// Flags of IncompleteBeta.
constexpr ErrorCode betaOutsideDomain = 1;
constexpr ErrorCode betaNotConvergent = 2;

struct RankCorrelations {
    SpearmanTable spearman;
    KendallTable kendall;
    // What kept the tables from being filled, so that the rest of them is zero: outOfMemory or a flag of
    // IncompleteBeta.
    ErrorCode fault = success;

    // Zero-filled tables; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index pairs);
};

// Whether a probability of rs shows that it is not that of Student's t with the divisor 1 - rs^2.
bool anyProbabilityDeviates(const SpearmanTable& table, Index samples);

// Fills the tables, that of Kendall only where it is wanted, and moves the progress from 70 to 100. A fault,
// which may come of Spearman's numbers and then counts for both tables, is kept in the record and does not
// end the run. Returns what the progress does.
[[nodiscard]] ErrorCode findRankCorrelations(Screens& screens, const Numerics& numerics,
                                             const DataMatrix& data, bool isKendallWanted,
                                             RankCorrelations& correlations);
