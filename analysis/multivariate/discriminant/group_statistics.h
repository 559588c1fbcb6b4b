#pragma once

#include "data/data_set.h"
#include "numeric/matrix.h"
#include "numeric/numerics.h"

// Moments of the groups of samples that the last column of a data matrix numbers from 1, over the q columns
// before it. Sums are of squares and cross products of deviations; a packed one holds the upper triangle of a
// q x q matrix by rows.
struct GroupStatistics {
    Index groups = 0;           // G
    Index variables = 0;        // q
    Index samples = 0;          // N
    Index rows = 0;             // samples that are here, N or none
    Block<std::int32_t> counts; // G
    Matrix groupMeans;          // G x q
    Block<double> totalMeans;   // q
    Matrix groupSums;           // a packed triangle in each of G rows, about the group's means
    Block<double> totalSums;    // one packed triangle, about the total means
    Matrix total;               // q x q, T
    Matrix within;              // q x q, W: the sum of the groups' sums

    // Degrees of freedom within the groups.
    double withinFreedom() const { return static_cast<double>(samples - groups); }
    // For the data whose last column was checked to number `groupCount` groups. Returns success or
    // outOfMemory.
    [[nodiscard]] ErrorCode allocate(const DataMatrix& data, Index groupCount);
};

// Fills zero statistics in one pass over the samples (Welford 1962).
void gatherGroups(const DataMatrix& data, GroupStatistics& statistics);

// The same in passes: means, what rounding left of the deviations from them (Chan, Golub and LeVeque 1983),
// and sums of products. Exact where the means are large beside the deviations.
void gatherGroupsInPasses(const DataMatrix& data, GroupStatistics& statistics);

// The same from the moments of groups that stand in the place of samples.
void takeGroupMoments(const DataMatrix& data, GroupStatistics& statistics);

// Box's test of equal covariance matrices (Box 1949).
struct BoxTest {
    // G + 1: of the pooled covariance matrix, then of each group's; 0 or infinite beyond the range of double
    Block<double> determinants;
    double chiSquare = 0.0;
    double probability = 0.0;
    double freedom = 0.0;

    // Zero determinants for so many groups; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index groups);
};

// Tests the groups. Returns success, outOfMemory, or singularMatrix when a covariance matrix is singular.
[[nodiscard]] ErrorCode testBoxM(const Numerics& numerics, const GroupStatistics& statistics, BoxTest& test);
