#pragma once

#include "data/import/import_plan.h"
#include "data/import/table_sink.h"

// Reads the source again and writes the first `mostRows` rows of it by the plan. Success; outOfMemory;
// illegalData with a refusal when the file is not what was surveyed any more or the sink failed.
[[nodiscard]] ErrorCode writeTable(ByteSource& source, const ImportOptions& options,
                                   const ImportSurvey& survey, const ImportPlan& plan, Index mostRows,
                                   TableSink& sink, ImportMessages& messages);

// Writes what the categories mean: a table of variable, category and text. False when the sink failed.
bool writeCodebook(const ImportSurvey& survey, const ImportPlan& plan, TableSink& sink);
