#pragma once

#include "analysis/multivariate/discriminant/group_statistics.h"
#include "report/screens.h"

// The explanatory variables in the order in which they count, and how they were chosen.
struct VariableSelection {
    Block<std::int32_t> order; // q: indices from 0, the selected ones first
    Index selected = 0;
    Index tested = 0; // those and the one that was turned away, if any
    // Of each tested variable; q rooms.
    Block<double> f, probability, firstFreedom, secondFreedom;

    // All variables selected, in their own order. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index variables);
};

// Forward selection by the partial F of Wilks' lambda (Rao 1965): the variable with the largest F enters
// until that is below fIn or its upper tail above fInProbability. A variable whose F is not a number is
// passed over. Returns success or outOfMemory.
[[nodiscard]] ErrorCode selectForward(const Numerics& numerics, const GroupStatistics& statistics, double fIn,
                                      double fInProbability, VariableSelection& selection,
                                      const Stage& stage = {});
