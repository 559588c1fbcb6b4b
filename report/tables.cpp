#include "report/tables.h"

#include <cstdio>

#include "report/table_formats.h"

namespace {

void writeNames(Report& report, const DataMatrix& data, Index count) {
    startHeader(report);
    for (Index v = 0; v < count; ++v) writeName(report, data.name(v));
    endRow(report);
}

void writeTriangle(Report& report, const RowLabels& labels, Index count, const double* matrix, Index stride,
                   int slot) {
    for (Index i = 0; i < count; ++i) {
        labels.startRow(report, i);
        for (Index j = 0; j <= i; ++j) writeValue(report, matrix[i * stride + j], slot);
        endRow(report);
    }
}

void writeRows(Report& report, Index rows, Index count, const double* matrix, Index stride,
               const RowLabels& labels, int slot) {
    for (Index i = 0; i < rows; ++i) {
        labels.startRow(report, i);
        for (Index j = 0; j < count; ++j) writeValue(report, matrix[i * stride + j], slot);
        endRow(report);
    }
}

void writePairHeader(Report& report, std::span<const PairColumn> columns) {
    startHeader(report, "r.item");
    for (const PairColumn& column : columns) writeName(report, column.title);
    endRow(report);
}

// One row for each pair; the first column has a format of its own.
void writePairRows(Report& report, Index variables, std::span<const PairColumn> columns, CellFormat first,
                   CellFormat others) {
    char label[64];
    Index pair = 0;
    for (Index i = 1; i < variables; ++i) {
        for (Index j = i + 1; j <= variables; ++j, ++pair) {
            std::snprintf(label, sizeof label, "var%td & var%td", i, j);
            startRow(report, pair + 1, label);
            for (const PairColumn& column : columns) {
                writeCell(report, column.values[pair], &column == columns.data() ? first : others);
            }
            endRow(report);
        }
    }
}

TableFormats formatsOf(const Report& report, const double* values, Index count) {
    return formatsForMagnitude(largestMagnitude(values, count), report.formats.nameLength,
                               report.formats.labelWidth);
}

CellFormat cellOf(const TableFormats& formats, int slot) {
    return {formats.width, formats.decimals[slot]};
}

Index pairCount(const DataSet& data) {
    const Index variables = data.working.variables;
    return variables > 1 ? variables * (variables - 1) / 2 : 0;
}

} // namespace

void WriteVariableHeader(Report& report, const DataSet& data) {
    writeNames(report, data.working, data.working.variables);
}

void WriteExplanatoryHeader(Report& report, const DataSet& data) {
    writeNames(report, data.working, data.otherCount);
}

void WriteNamedHeader(Report& report, std::span<const char* const> names, int width) {
    startHeader(report);
    for (const char* name : names) writeText(report, name, width);
    endRow(report);
}

void WriteFactorHeader(Report& report, Index count, int width) {
    WritePrefixedHeader(report, count, "factor", "", width);
}

void WriteVectorHeader(Report& report, Index count, int width) {
    WritePrefixedHeader(report, count, "vector", "", width);
}

void WritePrefixedHeader(Report& report, Index count, const char* prefix, const char* lastTitle, int width) {
    startHeader(report);
    for (Index k = 0; k < count; ++k) writeText(report, numberedName(prefix, k).text, width);
    if (lastTitle[0] != '\0') writeText(report, lastTitle, width);
    endRow(report);
}

void WriteValueRow(Report& report, const double* values, Index count, int slot, const char* label,
                   Index number) {
    startRow(report, number, label);
    for (Index k = 0; k < count; ++k) writeValue(report, values[k], slot);
    endRow(report);
}

void WriteIntegerRow(Report& report, const std::int32_t* value, int width, const char* label, Index number) {
    startRow(report, number, label);
    writeInteger(report, *value, width);
    endRow(report);
}

void WriteLowerTriangle(Report& report, const DataSet& data, const double* matrix, int slot) {
    const Index variables = data.working.variables;
    WriteVariableHeader(report, data);
    writeTriangle(report, data.working.names, variables, matrix, variables, slot);
}

void WriteExplanatoryMatrix(Report& report, const DataSet& data, const double* matrix) {
    WriteExplanatoryHeader(report, data);
    writeTriangle(report, data.working.names, data.otherCount, matrix, data.otherCount, 3);
}

void WriteDataTable(Report& report, const DataSet& data, const double* matrix) {
    const DataMatrix& working = data.working;
    WriteVariableHeader(report, data);
    writeRows(report, working.samples, working.variables, matrix, working.variables, working.labels, 3);
}

void WriteFactorTable(Report& report, const Matrix& matrix, Index count, const RowLabels& labels) {
    WriteFactorTable(report, matrix.rows(), count, matrix.data(), matrix.columns(), labels);
}

void WriteVectorTable(Report& report, const Matrix& matrix, Index count, const RowLabels& labels) {
    WriteVectorTable(report, matrix.rows(), count, matrix.data(), matrix.columns(), labels);
}

void WriteFactorTable(Report& report, Index rows, Index count, const double* matrix, Index stride,
                      const RowLabels& labels) {
    WriteFactorHeader(report, count, report.formats.nameLength);
    writeRows(report, rows, count, matrix, stride, labels, 6);
}

void WriteVectorTable(Report& report, Index rows, Index count, const double* matrix, Index stride,
                      const RowLabels& labels) {
    WriteVectorHeader(report, count, report.formats.nameLength);
    writeRows(report, rows, count, matrix, stride, labels, 6);
}

void WriteFactorTriangle(Report& report, Index count, const double* matrix, Index stride) {
    WriteFactorHeader(report, count, report.formats.nameLength);
    writeTriangle(report, RowLabels("factor"), count, matrix, stride, 6);
}

void WritePairTable5(Report& report, const DataSet& data, const PairColumn (&columns)[5]) {
    SetFormatsFromData(report, data, report.formats.nameLength, report.formats.labelWidth);
    writePairHeader(report, columns);
    const TableFormats first = formatsOf(report, columns[0].values, pairCount(data));
    const TableFormats others = formatsOf(report, columns[1].values, pairCount(data));
    writePairRows(report, data.working.variables, columns, cellOf(first, 3), cellOf(others, 6));
}

void WritePairTable3(Report& report, const DataSet& data, const PairColumn (&columns)[3]) {
    report.formats = formatsOf(report, columns[1].values, pairCount(data));
    writePairHeader(report, columns);
    const CellFormat format = cellOf(report.formats, 6);
    writePairRows(report, data.working.variables, columns, format, format);
}
