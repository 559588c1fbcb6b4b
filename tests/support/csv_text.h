#pragma once

#include <cstdio>
#include <string>

#include "data/csv_reader.h"
#include "data/data_set.h"

// Reads a text as a data file.
inline FileCode readText(const std::string& text, CellTable& table, ReadingNotes& notes) {
    std::FILE* file = fmemopen(const_cast<char*>(text.data()), text.size(), "r");
    const FileCode code = readCsvStream(file, table, notes);
    std::fclose(file);
    return code;
}

inline FileCode readText(const std::string& text, CellTable& table) {
    ReadingNotes notes;
    return readText(text, table, notes);
}

// The same, built into a data set with its working part filled.
inline ErrorCode loadDataSet(const std::string& text, DataSet& data) {
    if (readText(text, data.cells, data.notes) != FileCode::done) return illegalData;
    const ErrorCode code = allocateDataSet(data);
    if (code != success) return code;
    buildDataSet(data);
    copyLoadedToWorking(data);
    return success;
}
