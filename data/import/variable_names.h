#pragma once

#include "data/import/import_plan.h"

// Names the variables of a plan: cleaned, at most 62 bytes, and each another (".2", ".3" behind the later
// ones of a name). Tells what is changed. Success or outOfMemory.
[[nodiscard]] ErrorCode nameVariables(const ImportSurvey& survey, ImportPlan& plan, ImportMessages& messages);
