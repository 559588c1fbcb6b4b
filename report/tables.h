#pragma once

#include "data/data_set.h"
#include "numeric/matrix.h"
#include "report/cells.h"

// The comma-separated tables that reports share, made of the cells of report/cells.h in the formats that are
// set (report/table_formats.h). Matrices are row-major; rows are numbered from 1.

// Headings of all working variables, or of those that are not chosen as purpose.
void WriteVariableHeader(Report& report, const DataSet& data);
void WriteExplanatoryHeader(Report& report, const DataSet& data);

// Headings given; each is cut to `width` and right-justified in it.
void WriteNamedHeader(Report& report, std::span<const char* const> names, int width);
void WriteFactorHeader(Report& report, Index count, int width); // "factor %d"
void WriteVectorHeader(Report& report, Index count, int width); // "vector %d"
// "%s %d" of the prefix, then the last title when it is not empty.
void WritePrefixedHeader(Report& report, Index count, const char* prefix, const char* lastTitle, int width);

void WriteValueRow(Report& report, const double* values, Index count, int slot, const char* label,
                   Index number);
void WriteIntegerRow(Report& report, const std::int32_t* value, int width, const char* label, Index number);

// variables x variables with the working variables' names.
void WriteLowerTriangle(Report& report, const DataSet& data, const double* matrix, int slot);
// The same for the variables that are not chosen as purpose, in slot 3.
void WriteExplanatoryMatrix(Report& report, const DataSet& data, const double* matrix);
// samples x variables with the working labels and names, in slot 3.
void WriteDataTable(Report& report, const DataSet& data, const double* matrix);

// The first `count` columns of all rows under "factor %d" or "vector %d". Slot 6.
void WriteFactorTable(Report& report, const Matrix& matrix, Index count, const RowLabels& labels);
void WriteVectorTable(Report& report, const Matrix& matrix, Index count, const RowLabels& labels);
// The same for rows x count of a block; row i begins at matrix[i * stride].
void WriteFactorTable(Report& report, Index rows, Index count, const double* matrix, Index stride,
                      const RowLabels& labels);
void WriteVectorTable(Report& report, Index rows, Index count, const double* matrix, Index stride,
                      const RowLabels& labels);
// Lower triangle of the first count rows, which are called "factor %d" as are its columns. Slot 6.
void WriteFactorTriangle(Report& report, Index count, const double* matrix, Index stride);

// The statistics of every pair of working variables, in the order (1,2), (1,3), ... (2,3), ...
struct PairColumn {
    const char* title;
    const double* values;
};
// Five columns, the first in slot 3 of its own formats and the others in slot 6 of the second one's; the
// heading has the formats of the data.
void WritePairTable5(Report& report, const DataSet& data, const PairColumn (&columns)[5]);
// Three columns in slot 6, all in the second one's formats.
void WritePairTable3(Report& report, const DataSet& data, const PairColumn (&columns)[3]);
