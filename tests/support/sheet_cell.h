#pragma once

#include <sstream>
#include <string>

// A cell of a sheet that is written like a csv file, from 1; empty outside.
inline std::string sheetCell(const std::string& sheet, int row, int col) {
    std::istringstream lines(sheet);
    std::string line, cell;
    while (row-- > 0 && !std::getline(lines, line).fail()) continue;
    std::istringstream cells(lines ? line : "");
    while (col-- > 0 && !std::getline(cells, cell, ',').fail()) continue;
    return cells ? cell : "";
}
