#pragma once

#include "data/import/column_names.h"
#include "data/import/column_survey.h"
#include "data/import/import_messages.h"
#include "data/import/import_rows.h"

// What the first reading of a file found.
struct ImportSurvey {
    ImportForm form;
    ColumnNames names;
    Block<ColumnWish> wishes;
    Block<ColumnSurvey> columns;
    CategoryTexts texts;
    bool firstIsDifferent = false; // no two cells of the first column are alike
    bool firstIsQuoted = false;    // one of them at least
    bool firstCounts = false;      // they count the rows, from 0 or 1
    Index totalLine = 0;           // of one of the last rows that the first column calls a total; 0: none
    Index labelRows = 0;           // rows of three cells or more whose cells behind the first are empty
    Index firstLabelRow = 0;       // the line of the first of them
    Index rows = 0;
    Index widestRow = 0; // bytes of a row as it would be written, every number as it stands
    PassedOver passedOver;
    std::uint64_t checksum = 0; // of the whole text
    bool isCut = false;         // there are more rows than were asked for
};

// Reads the first `mostRows` rows of the source. Success; outOfMemory; illegalData with a refusal.
[[nodiscard]] ErrorCode surveyImport(ByteSource& source, const ImportOptions& options, Index mostRows,
                                     ImportSurvey& survey, ImportMessages& messages);
