#pragma once

#include "batch/complaint.h"
#include "data/data_set.h"
#include "report/charts/chart.h"

// Tells the working samples apart by the texts of a column of the file, also of one that is excluded: numbers
// in ascending order, others as they come. Empty cells are in no group. False and a complaint when there is
// no such column, or when it has more than SampleGroups::most different texts or none.
bool findGroups(const char* variable, const DataSet& data, SampleGroups& groups, Complaint& complaint);
