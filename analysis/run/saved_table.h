#pragma once

#include "analysis/run/analysis_run.h"
#include "report/text_buffer.h"

// The analysed table with the columns that the last analysis has kept for its samples, as a comma-separated
// file that this program reads again as it was: labels and variables, but for the excluded ones, as they
// stand in the file, and the columns in full precision. Samples that were left out, and values that are not
// finite, have NA in the columns. A column whose name is taken becomes "NAME.2", ...

// Fills an unallocated text. Returns success or outOfMemory.
[[nodiscard]] ErrorCode writeSavedTable(const AnalysisRun& run, TextBuffer& text);

// Whether no line of it is too long for the reader.
bool canBeReadAgain(const TextBuffer& text);

// Columns of the cell table whose exclusion makes every line short enough, whatever the values then are.
struct Remedy {
    std::int32_t columns[ExclusionList::slotCount];
    int count = 0;
    bool helps = false; // false: not even as many as can be excluded are enough
};

// Chooses among the variables in use that need not be kept (flags by column of the cell table), those with
// long cells first. Returns success or outOfMemory.
[[nodiscard]] ErrorCode findRemedy(const AnalysisRun& run, const Block<std::int32_t>& isKept, Remedy& remedy);
