#include "report/cells.h"

#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "report/structure.h"

namespace {

std::string_view cutTo(const char* text, int length) {
    return std::string_view(text).substr(0, length > 0 ? static_cast<std::size_t>(length) : 0);
}

void writeLabel(Report& report, const char* label, int width) {
    report.lower.appendRight(cutTo(label, width), width);
}

// The label cell of a row, behind its mark.
void startLabel(Report& report, Index number, std::string_view mark, const char* label, int width) {
    report.lower.append(',');
    writeLabel(report, label, width);
    if (report.structure != nullptr) report.structure->startRow(number, mark, label, width);
}

} // namespace

NumberText numberText(double value, int width, int decimals) {
    char digits[numberSize];
    const std::string_view number = formatNumber(value, decimals, digits);
    NumberText text;
    std::snprintf(text.text, sizeof text.text, "%*.*s", width, static_cast<int>(number.size()),
                  number.data());
    return text;
}

NumberedName numberedName(const char* prefix, Index index) {
    NumberedName name;
    std::snprintf(name.text, sizeof name.text, "%.40s %td", prefix, index + 1);
    return name;
}

void clearReport(Report& report) {
    report.lower.clear();
    if (report.structure != nullptr) report.structure->clear();
}

bool isComplete(const Report& report) {
    return !report.lower.ranOutOfMemory() &&
           (report.structure == nullptr || !report.structure->ranOutOfMemory());
}

void writeTitle(Report& report, const char* title) {
    report.lower.append('\n');
    report.lower.append(title);
    report.lower.append('\n');
    if (report.structure != nullptr) report.structure->addTitle(title);
}

void writeOptionLine(Report& report, const char* line) {
    report.lower.append(line);
    report.lower.append('\n');
    if (report.structure != nullptr) report.structure->addOption(line);
}

void writeCaption(Report& report, const char* text) {
    report.lower.append("\t");
    report.lower.append(text);
    report.lower.append('\n');
    if (report.structure != nullptr) report.structure->addCaption(text);
}

void writeCaptionFormat(Report& report, const char* format, ...) {
    char text[numberSize + 260]; // a number may be as long as it gets
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    writeCaption(report, text);
}

void endTable(Report& report) {
    report.lower.append('\n');
    if (report.structure != nullptr) report.structure->endTable();
}

void startHeader(Report& report, const char* label) {
    startHeader(report, label, report.formats.labelWidth);
}

void startRow(Report& report, Index number, const char* label) {
    startRow(report, number, label, report.formats.labelWidth);
}

void startUnnumberedRow(Report& report, const char* label) {
    startUnnumberedRow(report, label, report.formats.labelWidth);
}

void endRow(Report& report) {
    report.lower.append('\n');
}

void startHeader(Report& report, const char* label, int labelWidth) {
    report.lower.append("  n,");
    writeLabel(report, label, labelWidth);
    if (report.structure != nullptr) report.structure->startHead(label, labelWidth);
}

void startRow(Report& report, Index number, const char* label, int labelWidth) {
    char digits[wholeSize];
    const std::string_view mark = formatWhole(number, digits);
    report.lower.appendRight(mark, 3);
    startLabel(report, number, mark, label, labelWidth);
}

void startUnnumberedRow(Report& report, const char* label, int labelWidth, const char* mark) {
    report.lower.append(mark);
    startLabel(report, StructureRow::unnumbered, mark, label, labelWidth);
}

void writeName(Report& report, const char* name) {
    report.lower.append(',');
    report.lower.appendRight(cutTo(name, report.formats.nameLength), report.formats.width);
    if (report.structure != nullptr) report.structure->addText(name, report.formats.nameLength);
}

void writeText(Report& report, const char* text, int width) {
    report.lower.append(',');
    report.lower.appendRight(cutTo(text, width), width);
    if (report.structure != nullptr) report.structure->addText(text, width);
}

void writeValue(Report& report, double value, int slot) {
    writeCell(report, value, {report.formats.width, report.formats.decimals[slot]});
}

void writeCell(Report& report, double value, CellFormat format) {
    report.lower.append(',');
    report.lower.appendNumber(value, format.width, format.decimals);
    if (report.structure == nullptr) return;
    char digits[numberSize];
    report.structure->addNumber(StructureCell::Kind::real, value,
                                formatNumber(value, format.decimals, digits));
}

void writeInteger(Report& report, std::int64_t value, int width) {
    report.lower.append(',');
    char digits[wholeSize];
    const std::string_view printed = formatWhole(value, digits);
    report.lower.appendRight(printed, width);
    if (report.structure == nullptr) return;
    report.structure->addNumber(StructureCell::Kind::whole, static_cast<double>(value), printed);
}

void writeCells(Report& report, Index number, const char* label, std::span<const double> values,
                CellFormat format) {
    startRow(report, number, label);
    for (const double value : values) writeCell(report, value, format);
    endRow(report);
}

void writeCellRow(Report& report, Index number, const char* label, double value, CellFormat format) {
    writeCells(report, number, label, {&value, 1}, format);
}

void RowLabels::startRow(Report& report, Index row) const {
    if (list_.size() > 0) {
        ::startRow(report, row + 1, list_[first_ + row]);
    } else if (prefix_ != nullptr) {
        ::startRow(report, row + 1, numberedName(prefix_, row).text);
    } else {
        ::startRow(report, row + 1, texts_[static_cast<std::size_t>(row)]);
    }
}
