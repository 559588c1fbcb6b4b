#pragma once

#include "data/data_set.h"

// Moments of the groups of samples that the last column of a data matrix numbers from 1, over the q columns
// before it. Sums are of squares and cross products of deviations; a packed one holds the upper triangle of a
// q x q matrix by rows.
struct GroupStatistics {
    int groups = 0;             // G
    int variables = 0;          // q
    int samples = 0;            // N
    Block<std::int32_t> counts; // G
    Block<double> groupMeans;   // G x q
    Block<double> totalMeans;   // q
    Block<double> groupSums;    // G packed triangles, about the groups' means
    Block<double> totalSums;    // one packed triangle, about the total means
    Block<double> total;        // q x q, T
    Block<double> within;       // q x q, W: the sum of the groups' sums

    Index packedSize() const { return Index{variables} * (variables + 1) / 2; }
    // For the data whose last column was checked to number `groupCount` groups. Returns 0 or outOfMemory.
    ErrorCode allocate(const DataMatrix& data, int groupCount);
};

// One pass over the samples (Welford 1962).
void gatherGroups(const DataMatrix& data, GroupStatistics& statistics);

// Box's test of equal covariance matrices (Box 1949).
struct BoxTest {
    Block<double> determinants; // G + 1: of the pooled covariance matrix, then of each group's
    double chiSquare = 0.0;
    double probability = 0.0;
    double degrees = 0.0;

    ErrorCode allocate(int groups);
};

// Returns 0, outOfMemory, or singularMatrix when a covariance matrix is singular.
ErrorCode testBoxM(const GroupStatistics& statistics, BoxTest& test);
