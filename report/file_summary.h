#pragma once

#include "data/data_set.h"
#include "report/screens.h"

// Writes what an opened file or a changed exclusion gave into the upper text and the status, and shows them:
// file name, path, counts, names and the whole working matrix. The lower text serves as scratch and is left
// with the matrix, unshown. `tellDoubts` lets the status go on with left out samples and doubts.
void writeFileSummary(Screens& screens, Report& report, const DataSet& data, int variableLength,
                      int labelLength, bool tellDoubts = false);
