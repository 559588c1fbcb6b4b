#include "report/category_rows.h"

#include <cstdio>

void WriteCategoryStart(Report& report, int category, int index) {
    char label[40];
    std::snprintf(label, sizeof label, "%3d (%3d)", category, index);
    report.lower.append("   ,");
    WriteLabel(report, label);
}

void WriteNumberedHeader(Report& report, int count, int width) {
    char number[16];
    WriteHeaderStart(report);
    for (int k = 1; k <= count; ++k) {
        std::snprintf(number, sizeof number, "%d", k);
        WriteNameOfWidth(report, number, width);
    }
    WriteRowEnd(report);
}
