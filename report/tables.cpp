#include "report/tables.h"

#include <cstdio>
#include <string_view>

#include "report/table_formats.h"

namespace {

std::string_view cutTo(const char* text, int length) {
    return std::string_view(text).substr(0, length > 0 ? static_cast<std::size_t>(length) : 0);
}

void writeNames(Report& report, const TextSlot* names, int count) {
    WriteHeaderStart(report);
    for (int j = 0; j < count; ++j) WriteName(report, names[j].text);
    WriteRowEnd(report);
}

// "prefix 1" .. "prefix count", without the end of the row.
void writeNumbered(Report& report, const char* prefix, int count, int width) {
    char title[64];
    for (int k = 1; k <= count; ++k) {
        std::snprintf(title, sizeof title, "%.40s %d", prefix, k);
        WriteNameOfWidth(report, title, width);
    }
}

void writeTriangle(Report& report, const TextSlot* names, int count, const double* matrix, int slot) {
    for (int i = 0; i < count; ++i) {
        WriteValueRow(report, matrix + static_cast<std::size_t>(i) * static_cast<std::size_t>(count), i + 1,
                      slot, names[i].text, i + 1);
    }
}

void writeRows(Report& report, int rows, int count, const double* matrix, int stride, const TextSlot* labels,
               int slot) {
    for (int i = 0; i < rows; ++i) {
        WriteValueRow(report, matrix + static_cast<std::size_t>(i) * static_cast<std::size_t>(stride), count,
                      slot, labels[i].text, i + 1);
    }
}

void writePairHeader(Report& report, const PairColumn* columns, int count) {
    report.lower.append("  n,");
    WriteLabel(report, "r.item");
    for (int k = 0; k < count; ++k) WriteName(report, columns[k].title);
    WriteRowEnd(report);
}

// One row for each pair; column k is in slots[k] of formats[k].
void writePairRows(Report& report, int variables, const PairColumn* columns, int count,
                   const TableFormats* const* formats, const int* slots) {
    char label[64];
    int pair = 0;
    for (int i = 1; i < variables; ++i) {
        for (int j = i + 1; j <= variables; ++j, ++pair) {
            std::snprintf(label, sizeof label, "var%d & var%d", i, j);
            WriteRowStart(report, pair + 1, label);
            for (int k = 0; k < count; ++k) {
                WriteWideValue(report, columns[k].values[pair], formats[k]->width,
                               formats[k]->decimals[slots[k]]);
            }
            WriteRowEnd(report);
        }
    }
}

TableFormats formatsOf(const Report& report, const double* values, int count) {
    return formatsForMagnitude(largestMagnitude(values, static_cast<std::size_t>(count)),
                               report.formats.nameLength, report.formats.labelWidth);
}

int pairCount(const DataSet& data) {
    const int variables = data.working.variables;
    return variables > 1 ? variables * (variables - 1) / 2 : 0;
}

} // namespace

void WriteLabel(Report& report, const char* label) {
    report.lower.appendRight(cutTo(label, report.formats.labelWidth), report.formats.labelWidth);
}

void WriteEmptyLabel(Report& report) {
    report.lower.appendRight("", report.formats.labelWidth);
}

void WriteRowStart(Report& report, int number, const char* label) {
    report.lower.appendInteger(number, 3);
    report.lower.append(",");
    WriteLabel(report, label);
}

void WriteHeaderStart(Report& report) {
    report.lower.append("  n,");
    WriteEmptyLabel(report);
}

void WriteName(Report& report, const char* name) {
    report.lower.append(",");
    report.lower.appendRight(cutTo(name, report.formats.nameLength), report.formats.width);
}

void WriteNameOfWidth(Report& report, const char* name, int width) {
    report.lower.append(",");
    report.lower.appendRight(cutTo(name, width), width);
}

void WriteValue(Report& report, double value, int slot) {
    WriteWideValue(report, value, report.formats.width, report.formats.decimals[slot]);
}

void WriteWideValue(Report& report, double value, int width, int decimals) {
    report.lower.append(",");
    report.lower.appendNumber(value, width, decimals);
}

void WriteRowEnd(Report& report) {
    report.lower.append("\n");
}

void WriteVariableHeader(Report& report, const DataSet& data) {
    writeNames(report, data.working.names.data(), data.working.variables);
}

void WriteExplanatoryHeader(Report& report, const DataSet& data) {
    writeNames(report, data.working.names.data(), data.otherCount);
}

void WriteNamedHeader(Report& report, const char* const* names, int count, int width) {
    WriteHeaderStart(report);
    for (int k = 0; k < count; ++k) WriteNameOfWidth(report, names[k], width);
    WriteRowEnd(report);
}

void WriteFactorHeader(Report& report, int count, int width) {
    WritePrefixedHeader(report, count, "factor", "", width);
}

void WriteVectorHeader(Report& report, int count, int width) {
    WritePrefixedHeader(report, count, "vector", "", width);
}

void WritePrefixedHeader(Report& report, int count, const char* prefix, const char* lastTitle, int width) {
    WriteHeaderStart(report);
    writeNumbered(report, prefix, count, width);
    if (lastTitle[0] != '\0') WriteNameOfWidth(report, lastTitle, width);
    WriteRowEnd(report);
}

void WriteValueRow(Report& report, const double* values, int count, int slot, const char* label, int number) {
    WriteRowStart(report, number, label);
    for (int k = 0; k < count; ++k) WriteValue(report, values[k], slot);
    WriteRowEnd(report);
}

void WriteIntegerRow(Report& report, const std::int32_t* value, int width, const char* label, int number) {
    WriteRowStart(report, number, label);
    report.lower.append(",");
    report.lower.appendInteger(*value, width);
    WriteRowEnd(report);
}

void WriteLowerTriangle(Report& report, const DataSet& data, const double* matrix, int slot) {
    WriteVariableHeader(report, data);
    writeTriangle(report, data.working.names.data(), data.working.variables, matrix, slot);
}

void WriteExplanatoryMatrix(Report& report, const DataSet& data, const double* matrix) {
    WriteExplanatoryHeader(report, data);
    writeTriangle(report, data.working.names.data(), data.otherCount, matrix, 3);
}

void WriteDataTable(Report& report, const DataSet& data, const double* matrix) {
    WriteVariableHeader(report, data);
    writeRows(report, data.working.samples, data.working.variables, matrix, data.working.variables,
              data.working.labels.data(), 3);
}

void WriteFactorTable(Report& report, int rows, int count, const double* matrix, int stride,
                      const TextSlot* labels) {
    WriteFactorHeader(report, count, report.formats.nameLength);
    writeRows(report, rows, count, matrix, stride, labels, 6);
}

void WriteVectorTable(Report& report, int rows, int count, const double* matrix, int stride,
                      const TextSlot* labels) {
    WriteVectorHeader(report, count, report.formats.nameLength);
    writeRows(report, rows, count, matrix, stride, labels, 6);
}

void WriteFactorTriangle(Report& report, int count, const double* matrix, int stride) {
    WriteFactorHeader(report, count, report.formats.nameLength);
    char label[64];
    for (int i = 0; i < count; ++i) {
        std::snprintf(label, sizeof label, "factor %d", i + 1);
        WriteValueRow(report, matrix + static_cast<std::size_t>(i) * static_cast<std::size_t>(stride), i + 1,
                      6, label, i + 1);
    }
}

void WritePairTable5(Report& report, const DataSet& data, const PairColumn (&columns)[5]) {
    SetFormatsFromData(report, data, report.formats.nameLength, report.formats.labelWidth);
    writePairHeader(report, columns, 5);
    const TableFormats first = formatsOf(report, columns[0].values, pairCount(data));
    const TableFormats others = formatsOf(report, columns[1].values, pairCount(data));
    const TableFormats* const formats[] = {&first, &others, &others, &others, &others};
    const int slots[] = {3, 6, 6, 6, 6};
    writePairRows(report, data.working.variables, columns, 5, formats, slots);
}

void WritePairTable3(Report& report, const DataSet& data, const PairColumn (&columns)[3]) {
    report.formats = formatsOf(report, columns[1].values, pairCount(data));
    writePairHeader(report, columns, 3);
    const TableFormats* const formats[] = {&report.formats, &report.formats, &report.formats};
    const int slots[] = {6, 6, 6};
    writePairRows(report, data.working.variables, columns, 3, formats, slots);
}
