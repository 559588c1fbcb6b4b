#include "analysis/run/saved_name.h"

#include <cstdio>
#include <cstring>

ColumnName uniqueColumnName(const CellTable& cells, const char* name) {
    ColumnName unique;
    std::snprintf(unique.text, sizeof unique.text, "%s", name);
    const auto isTaken = [&] {
        for (std::int32_t col = 1; col < cells.cols; ++col) {
            if (std::strcmp(cells.cell(0, col), unique.text) == 0) return true;
        }
        return false;
    };
    for (int number = 2; isTaken(); ++number) {
        std::snprintf(unique.text, sizeof unique.text, "%.48s.%d", name, number);
    }
    return unique;
}
