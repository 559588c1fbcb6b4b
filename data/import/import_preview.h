#pragma once

#include "data/byte_source.h"
#include "data/cell_table.h"
#include "data/import/column_names.h"
#include "data/import/import_choice.h"
#include "data/import/import_messages.h"

// How much of a file is looked at before it is imported.
struct PreviewLimits {
    Index shownRows = 20;
    Index surveyedRows = 1000; // what is found is found out from these, at least
};

// What an import would do, as far as the rows that were looked at tell.
struct ImportPreview {
    int words[wordChoiceCount] = {}; // what is found or said: the number of a word, 0 where nothing tells yet
    Index labelColumn = -1;          // of the file's columns; -1: none
    ColumnNames names;               // of the file's columns
    CellTable cells;                 // the first rows; row 0 holds the names
    bool isDecided = false; // the cells as they would be written; else some of them as they stand in the file
    bool isWhole = false;   // there are no more rows in the file
};

// Success; illegalData where `messages` hold a refusal, which says what has to be chosen; outOfMemory.
[[nodiscard]] ErrorCode previewImport(ByteSource& source, const ImportOptions& options,
                                      const PreviewLimits& limits, ImportPreview& preview,
                                      ImportMessages& messages);
