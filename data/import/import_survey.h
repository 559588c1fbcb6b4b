#pragma once

#include "data/import/column_survey.h"
#include "data/import/import_form.h"
#include "data/import/import_messages.h"
#include "data/import/table_rows.h"

// What the options say of a column by its name or number.
struct ColumnWish {
    bool dropped;
    bool unkept;      // others are to be kept
    bool categories;  // even of numbers
    bool labels;

    bool isOut() const { return dropped || unkept; }
};

// The names of the columns, as the header has them; V1, V2, ... where it has none.
struct ColumnNames {
    Block<char> characters;
    Block<Index> ends;
    Index count = 0;

    std::string_view operator[](Index column) const {
        const Index first = column > 0 ? ends[column - 1] : 0;
        return {characters.data() + first, static_cast<std::size_t>(ends[column] - first)};
    }
};

// What the first reading of a file found.
struct ImportSurvey {
    ImportForm form;
    ColumnNames names;
    Block<ColumnWish> wishes;
    Block<ColumnSurvey> columns;
    CategoryTexts texts;
    bool firstIsDifferent = false; // no two cells of the first column are alike
    Index rows = 0;
    Index widestRow = 0; // bytes of a row as it would be written, every number as it stands
    PassedOver passedOver;
    bool isCut = false; // there are more rows than were asked for
};

// Reads the first `mostRows` rows of the source. Success; outOfMemory; illegalData with a refusal.
[[nodiscard]] ErrorCode surveyImport(ByteSource& source, const ImportOptions& options, Index mostRows,
                                     ImportSurvey& survey, ImportMessages& messages);

// Tells a fault of the reading and where it stands.
void refuseFault(RecordFault fault, Index line, ImportMessages& messages);
