#pragma once

#include <cstdint>
#include <numeric>

#include "data/text_list.h"
#include "numeric/matrix.h"

// The moments of variables whose samples stand elsewhere, in a table too large to be read or in none: of all
// samples together, or of each group of them.
struct MomentTable {
    std::int32_t variables = 0; // p; 0: there are no moments
    std::int32_t groups = 0;    // 1 where samples are not grouped
    bool isGrouped = false;
    bool hasCounts = false;     // counts are known
    bool hasMeans = false;      // means are known, else 0
    bool hasDeviations = false; // else the covariances are correlations
    double leftOut = 0.0;       // samples that were not counted
    TextList names;             // p
    char groupName[textSlotSize] = "";

    Block<double> counts; // groups; group g has the number g + 1
    Matrix means;         // groups x p
    Matrix greatest;      // groups x p: the greatest size of a value, 1 where it is unknown
    Matrix covariances;   // groups * p x p: those of one group below those of another; divisor N

    // Zero-filled arrays of these sizes, every greatest size 1; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index groupCount, Index variableCount);
    bool isEmpty() const { return variables == 0; }
    // Of all groups; 0 where it is unknown.
    double samples() const { return std::accumulate(counts.begin(), counts.end(), 0.0); }
    double& covariance(Index group, Index i, Index j) { return covariances(group * variables + i, j); }
    double covariance(Index group, Index i, Index j) const { return covariances(group * variables + i, j); }
};

// Why moments are refused. Cells count from 1 in a line.
enum class MomentsFault {
    none,
    empty,            // no head, or nothing below it
    notText,          // a NUL
    openQuotes,       // that do not end
    wrongCells,       // a line has not as many as the head
    unknownColumn,    // `name`
    columnTwice,      // `name`
    variableTwice,    // `name`
    nameTooLong,      // `name`
    unknownPair,      // `name`: a covariance whose variables are not to be told
    noVariables,      // no means
    noCount,          // no column n
    badCount,         // n is `name`
    notNumber,        // `name` in the column `other`
    missingPair,      // of `name` and `other`
    rowsTooMany,      // more than one without groups
    wrongGroup,       // `name`: groups are numbered from 1 without gaps
    wrongVariable,    // `name`: a row of moments is missing, twice or of another variable
    notSymmetric,     // `name` and `other`
    negative,         // a variance or deviation: `name`
    deviationDiffers, // `name`: from the root of its variance
    tooLarge,         // the covariance of `name` and `other`, for their variances
    notDefinite,      // the matrix; most of it in `name` and `other`
    tooManySamples,   // more than 2,147,483,647
};

struct MomentsRefusal {
    MomentsFault fault = MomentsFault::none;
    long long line = 0; // of the file from 1; 0 for the whole file
    long long cell = 0; // 0 for the whole line
    char name[textSlotSize] = "";
    char other[textSlotSize] = "";
};

// Notes a fault and returns illegalData.
ErrorCode refuseMoments(MomentsRefusal& refusal, MomentsFault fault, const char* name = "",
                        const char* other = "");
