#pragma once

#include <cstdint>

// What came of opening or writing a file; the words stand in report/messages.cpp.
enum class FileCode : std::int32_t {
    done = 0,
    notOpened = 1, // or there is no data in it
    malformed = 2,
    noMemory = 4,
    notCreated = 8,
};

// Why a data file was refused.
enum class RefusalCause {
    none,
    missing,
    unreadable,
    folder,
    empty,   // no names in it
    notText, // this and what follows are wrong tables
    lineTooLong,
    cellTooLong,
    tooFewCells,
};

struct FileRefusal {
    RefusalCause cause = RefusalCause::none;
    long long line = 0;     // of the file from 1, comments included; 0 for the whole file
    std::int32_t cells = 0; // the number of the cell that is too long, or how many there are
    std::int32_t names = 0; // how many cells there have to be
};
