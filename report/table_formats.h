#pragma once

#include "data/data_set.h"
#include "numeric/matrix.h"
#include "report/report.h"

// The formats of a table, fixed by the largest magnitude m that it prints, the variable string length V and
// the sample string length L: columns are max(V, integer digits of m + 1) wide, and slot k has
// min(k, max(0, V - 2 - digits)) decimals, so that wide numbers lose decimals first.
// A magnitude that is not finite counts as one digit.
TableFormats formatsForMagnitude(double largest, int variableLength, int labelLength);

// The largest |x| of `count` values; those that are not finite take no part, 0 when none does.
double largestMagnitude(const double* values, Index count);

// Sets the report's formats from the whole working matrix, or from the given values.
void SetFormatsFromData(Report& report, const DataSet& data, int variableLength, int labelLength);
void SetFormatsFromValues(Report& report, const double* values, Index count, int variableLength,
                          int labelLength);

// The same with the string lengths that are set already.
void SetFormatsFromValues(Report& report, const double* values, Index count);
void SetFormatsFromValues(Report& report, const Block<double>& values);
void SetFormatsFromValues(Report& report, const Matrix& values);
