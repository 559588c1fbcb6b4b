#pragma once

#include "analysis/multivariate/discriminant/discriminant_selection.h"

// Scores that discriminate the groups: one of Fisher's linear function for two groups, the canonical ones for
// more. k is the number of selected variables, D = min(G - 1, k) for canonical functions and 1 for Fisher's.
// Reports show the first `vectors` of their D columns.
struct DiscriminantFunctions {
    Index dimensions = 0; // D
    Index vectors = 0;
    Index classifying = 0;        // the first columns that decide on a sample's group
    Matrix coefficients;          // k x D, for the variables as they are
    Block<double> constants;      // D
    Matrix centroids;             // G x D: the scores of the groups' means
    Matrix scores;                // samples x D
    Block<std::int32_t> assigned; // samples: the group that a sample is put into, from 0
    Block<std::int32_t> crossed;  // G x G: samples of each group (row) that are put into each group

    // Fisher's function.
    double mahalanobis = 0.0; // squared distance D2 of the two groups
    double errorRate = 0.0;   // of the normal groups with that distance
    double hotellingF = 0.0;
    double hotellingProbability = 0.0;
    double hotellingFreedom[2] = {};

    // Canonical functions.
    Matrix standardized;                           // k x D, for variables with a pooled variance of 1
    Block<double> eigenvalues;                     // k, of W^-1 (T - W); the first D count
    Block<double> chiSquare, probability, freedom; // D: Bartlett's tests that this root and all behind are 0

    // For functions of the selected variables. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(const GroupStatistics& statistics, const VariableSelection& selection);
};

// Two groups: coefficients S^-1 (m1 - m2) with the pooled covariance matrix S (Fisher 1936), the constant so
// that 0 is in the middle between the groups. Returns success, outOfMemory or singularMatrix.
[[nodiscard]] ErrorCode findFisher(const Numerics& numerics, const GroupStatistics& statistics,
                                   const VariableSelection& selection, DiscriminantFunctions& functions);

// Three or more groups: the eigenvectors of W^-1/2 (T - W) W^-1/2 (Rao 1952), the number of shown ones by
// Bartlett's tests at the level alpha, one at least. Those classify, or all of them in textbook numerics.
// Returns success, outOfMemory or singularMatrix.
[[nodiscard]] ErrorCode findCanonical(const Numerics& numerics, const GroupStatistics& statistics,
                                      const VariableSelection& selection, double alpha,
                                      DiscriminantFunctions& functions);

// How many of the first roots Bartlett's tests call significant at the level alpha; one at least where there
// is any.
Index significantRoots(const Numerics& numerics, const DiscriminantFunctions& functions, double alpha);

// Scores every sample and puts it into a group: of two by the sign of the score, 0 counting for the first; of
// more by the nearest centroid, the first of equals.
void classifySamples(const DataMatrix& data, const GroupStatistics& statistics,
                     const VariableSelection& selection, DiscriminantFunctions& functions);

// The squared distance of a sample from the centroid of a group by the functions that classify, whose pooled
// variance is the unit: the least is that of the group that the sample is put into.
double squaredGroupDistance(const DiscriminantFunctions& functions, Index sample, Index group);

// Whether all canonical functions put some sample into another group than those that classify.
bool doAllClassifyElsewhere(const DiscriminantFunctions& functions);
