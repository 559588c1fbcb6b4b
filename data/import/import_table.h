#pragma once

#include "data/byte_source.h"
#include "data/import/import_messages.h"
#include "data/import/import_options.h"
#include "data/import/table_sink.h"

// Reads a table as other programs save it and writes it in the program's own form: comma-separated, names in
// the first row, labels in the first column, NA for a missing cell. The source is read twice, in memory that
// grows with its widest line and its columns alone.
//
// Returns success; outOfMemory; illegalData when `messages` holds a refusal, with nothing written unless the
// file changed between the two readings or the sink failed (the refusal says so). `codebook`, when given,
// receives a table of the categories: variable, category, text.
[[nodiscard]] ErrorCode importTable(ByteSource& source, const ImportOptions& options, TableSink& sink,
                                    ImportMessages& messages, TableSink* codebook = nullptr);
