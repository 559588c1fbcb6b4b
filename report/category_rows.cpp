#include "report/category_rows.h"

#include <cstdio>

void startCategoryRow(Report& report, Index category, Index index) {
    char label[48];
    std::snprintf(label, sizeof label, "%3td (%3td)", category, index);
    startUnnumberedRow(report, label);
}

void writeNumberedHeader(Report& report, Index count, int width) {
    char number[24];
    startHeader(report);
    for (Index k = 1; k <= count; ++k) {
        std::snprintf(number, sizeof number, "%td", k);
        writeText(report, number, width);
    }
    endRow(report);
}
