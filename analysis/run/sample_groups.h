#pragma once

#include "data/data_set.h"
#include "report/charts/chart.h"

enum class GroupSearch {
    found,
    tooMany, // more than SampleGroups::most different texts
    none,    // all cells are empty
    noMemory,
};

// Tells the working samples apart by the texts of a column of the file (from 1), also of one that is
// excluded: numbers in ascending order, others as they come. Empty cells are in no group.
GroupSearch findGroups(const DataSet& data, std::int32_t column, SampleGroups& groups);
