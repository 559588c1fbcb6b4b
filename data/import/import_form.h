#pragma once

#include "data/import/record_reader.h"

// How a file is divided into cells, as far as its beginning tells.
struct ImportForm {
    TextEncoding encoding = TextEncoding::utf8;
    Index notUtf8Line = 0; // the line that shows a file without a mark to be no UTF-8; 0: none
    char delimiter = ',';
    bool namesDelimiter = false; // by a first line such as "sep=;"
    bool hasHeader = true;
    bool isCornerless = false; // the header has no name for the column of labels
    Index width = 0;           // cells of a row
    Index headerWidth = 0;     // cells of the header, of which the last may be empty names
    Index namesLine = 0;       // of the comment that holds the names; 0: none
    bool hasTitle = false;     // the first record of two columns is a title above the names
    Index secondNames = 0;     // rows below the header without numbers, as units, where numbers follow
    OddRows oddRows = OddRows::refused;
};

// Finds out the form; success, outOfMemory, or illegalData when the source cannot be read.
[[nodiscard]] ErrorCode findForm(ByteSource& source, const ImportOptions& options, ImportForm& form);

// The character of a delimiter, a comma where it is not found, and the other way round: found for any other
// character.
char characterOf(Delimiter delimiter);
Delimiter delimiterOf(char character);

// Whether that is how the column of labels is called: not at all, or label, name, id, no, n, case and the
// like.
bool isLabelName(std::string_view name);

// Whether a record begins with the mark of a comment: "#", "//" or ";", which is none when it delimits.
bool hasCommentMark(const ImportRecord& record, char delimiter);
// Whether a blank, or nothing, follows that mark.
bool hasBlankBehindMark(const ImportRecord& record);
// Takes the mark of a comment off its first cell, and that cell where nothing is left of it.
void takeMark(ImportRecord& record);
// The count of cells up to the last that is not empty.
Index filledWidth(const ImportRecord& record);
// Whether the record, above the names of a table, is a title: one cell alone where names of more belong.
bool isTitle(const ImportRecord& record, Index width);
// Whether all cells are empty.
bool isBlankRecord(const ImportRecord& record);
// Whether the record is a line that names the delimiter, as the first of a file can be.
bool isDelimiterLine(const ImportRecord& record, char& delimiter);
// Whether the cells are those of a row of the table; cells behind these have to be empty.
bool isFitting(const ImportRecord& record, Index width);
