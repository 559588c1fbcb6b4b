#pragma once

#include "analysis/run/analysis_kind.h"

// What a database can reduce the data of a kind to.
enum class Reduction {
    none,           // the analysis needs the samples themselves
    moments,        // of all columns
    groupedMoments, // of all columns, by the groups of one
    curveMoments,   // of the columns as a curve transforms them
    threeWayCounts, // of the categories of three columns
    crossCounts,    // of the categories of two columns
};

Reduction reductionOf(const AnalysisKind& kind);
