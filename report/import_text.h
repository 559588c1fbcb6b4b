#pragma once

#include "data/import/import_preview.h"
#include "report/text_buffer.h"

// The first rows in columns of equal width, a line for each. What is longer than 16 characters, and what
// stands behind 60 columns, is cut.
void writePreview(TextBuffer& text, const CellTable& cells);

// An entry of the list of a choice: 0 says what is found, as "found: comma", or that the file leaves it open;
// then come the words and, for the labels, the columns of the file. False behind the last.
bool writeChoiceEntry(TextBuffer& text, ImportChoice choice, int entry, const ImportOptions& options,
                      const ImportPreview& preview, const ImportMessages& messages);
