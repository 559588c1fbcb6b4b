#pragma once

#include <cstdint>

#include "data/data_set.h"
#include "report/screens.h"

// Rank correlations of all pairs of the columns of a samples x variables matrix. The pairs are numbered
// (1,2), (1,3), ... (2,3), ... and every array below has an item for each.

struct SpearmanTable {
    Block<double> d;  // sum of squared rank differences
    Block<double> zd; // of d, from its normal approximation
    Block<double> pd;
    Block<double> rs;
    Block<double> pr; // of rs, from Student's t

    ErrorCode allocate(Index pairs);
};

struct KendallTable {
    Block<double> tau;
    Block<double> z;
    Block<double> prob;

    ErrorCode allocate(Index pairs);
};

// Fills both tables and moves the progress from 70 to 100. Returns success, outOfMemory, or the flag of
// IncompleteBeta (1), which ends the computation at its pair.
ErrorCode rankCorrelations(Screens& screens, const DataMatrix& data, SpearmanTable& spearman,
                           KendallTable& kendall);
