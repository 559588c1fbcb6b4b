#pragma once

#include "report/text_buffer.h"

// Widths and decimals that the tables share; see report/table_formats.h.
struct TableFormats {
    static constexpr int slotCount = 13;
    int width;               // of a number and of a column heading
    int nameLength;          // variable names are cut to this
    int labelWidth;          // of the first column; labels are cut to this
    int decimals[slotCount]; // a slot is named by the most decimals that it can show: slot 3 has at most 3
};

class ReportStructure;

// The texts of the two screens and of the status line.
struct Report {
    TextBuffer upper; // the summary of the data file and the messages of the data source
    TextBuffer lower; // the report of an analysis or its error text
    TextBuffer status;
    TableFormats formats = {};
    ReportStructure* structure = nullptr; // where set, takes what the lower text is made of
};

constexpr Index upperTextCapacity = 32768;
constexpr Index lowerTextCapacity = 1048576;
constexpr Index statusTextCapacity = 1024;

// Three empty texts of these capacities; success or outOfMemory.
[[nodiscard]] inline ErrorCode allocateReport(Report& report, TextBuffer::Growth growth) {
    return report.upper.allocate(upperTextCapacity, growth) |
           report.lower.allocate(lowerTextCapacity, growth) |
           report.status.allocate(statusTextCapacity, growth);
}
