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
