#pragma once

#include <cstdio>
#include <string>

#include "data/csv_reader.h"

inline ErrorCode readText(std::string text, CellTable& table) {
    std::FILE* file = fmemopen(text.data(), text.size(), "r");
    const ErrorCode code = readCsvStream(file, table);
    std::fclose(file);
    return code;
}
