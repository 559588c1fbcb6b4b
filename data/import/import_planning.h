#pragma once

#include "data/import/import_plan.h"

// Decides, and tells what was found and left out. Success; outOfMemory; illegalData with a refusal, where
// data would be lost that no option gives up.
[[nodiscard]] ErrorCode planImport(const ImportSurvey& survey, const ImportOptions& options, ImportPlan& plan,
                                   ImportMessages& messages);
