#pragma once

#include <cstdio>

#include "data/byte_source.h"
#include "data/cell_table.h"
#include "data/reading_notes.h"

// Characters that a line can have; with its newline it holds at most 4,095.
constexpr std::size_t longestCsvLine = 4094;

// Reads a comma-separated file into `table`. The first line that is no comment (";" or "//" at its start)
// is the header and fixes the columns: those up to its last cell that is not empty, before any cell of more
// than 62 characters. Every further line that ends in a newline is a row.
//
// Returns done; notOpened (no such file, no header in it, or a read that failed); malformed (a
// line of more than 4,095 characters or with a NUL, a row with too few cells or an empty one, a cell of more
// than 62 characters below the header); or outOfMemory. The table is empty unless the result is done.
// `notes` tells what may be meant otherwise, or why the file is refused.
[[nodiscard]] FileCode readCsv(const char* path, CellTable& table, ReadingNotes& notes);

// The same from an open stream that can be rewound, and from bytes that are read twice.
[[nodiscard]] FileCode readCsvStream(std::FILE* file, CellTable& table, ReadingNotes& notes);
[[nodiscard]] FileCode readCsvSource(ByteSource& source, CellTable& table, ReadingNotes& notes);
