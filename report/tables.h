#pragma once

#include "data/data_set.h"
#include "report/report.h"

// The comma-separated tables of every report, appended to the lower text in the formats that are set
// (report/table_formats.h). Heading rows begin "  n," and an empty label; data rows begin "%3d," with a
// number that counts from 1. Each cell is preceded by "," and each row ends with a newline. Matrices are
// row-major.

// Pieces of a row, for tables of other shapes.
void WriteLabel(Report& report, const char* label); // cut to the label width and justified in it
void WriteEmptyLabel(Report& report);
void WriteRowStart(Report& report, int number, const char* label);  // "%3d," and the label
void WriteHeaderStart(Report& report);                              // "  n," and an empty label
void WriteName(Report& report, const char* name);                   // "," and a column heading
void WriteNameOfWidth(Report& report, const char* name, int width); // cut to width and justified in it
void WriteValue(Report& report, double value, int slot);
void WriteWideValue(Report& report, double value, int width, int decimals); // "," and a fixed format
void WriteRowEnd(Report& report);

// Headings of all working variables, or of those that are not chosen as purpose.
void WriteVariableHeader(Report& report, const DataSet& data);
void WriteExplanatoryHeader(Report& report, const DataSet& data);

// Headings given; each is cut to `width` and right-justified in it.
void WriteNamedHeader(Report& report, const char* const* names, int count, int width);
void WriteFactorHeader(Report& report, int count, int width); // "factor %d"
void WriteVectorHeader(Report& report, int count, int width); // "vector %d"
// "%s %d" of the prefix, then the last title when it is not empty.
void WritePrefixedHeader(Report& report, int count, const char* prefix, const char* lastTitle, int width);

void WriteValueRow(Report& report, const double* values, int count, int slot, const char* label, int number);
void WriteIntegerRow(Report& report, const std::int32_t* value, int width, const char* label, int number);

// variables x variables with the working variables' names.
void WriteLowerTriangle(Report& report, const DataSet& data, const double* matrix, int slot);
// The same for the variables that are not chosen as purpose, in slot 3.
void WriteExplanatoryMatrix(Report& report, const DataSet& data, const double* matrix);
// samples x variables with the working labels and names, in slot 3.
void WriteDataTable(Report& report, const DataSet& data, const double* matrix);

// rows x count under "factor %d" or "vector %d"; row i begins at matrix[i * stride]. Slot 6.
void WriteFactorTable(Report& report, int rows, int count, const double* matrix, int stride,
                      const TextSlot* labels);
void WriteVectorTable(Report& report, int rows, int count, const double* matrix, int stride,
                      const TextSlot* labels);
// Lower triangle of a count x count matrix, rows and columns "factor %d". Slot 6.
void WriteFactorTriangle(Report& report, int count, const double* matrix, int stride);

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
