#pragma once

#include <cstdio>
#include <string>

#include "data/csv_reader.h"
#include "data/data_set.h"

inline ErrorCode readText(const std::string& text, CellTable& table) {
    std::FILE* file = fmemopen(const_cast<char*>(text.data()), text.size(), "r");
    const ErrorCode code = readCsvStream(file, table);
    std::fclose(file);
    return code;
}

inline ErrorCode loadDataSet(const std::string& text, DataSet& data) {
    ErrorCode code = readText(text, data.cells);
    if (code == success) code = allocateDataSet(data);
    if (code != success) return code;
    buildDataSet(data);
    copyLoadedToWorking(data);
    return success;
}
