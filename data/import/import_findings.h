#pragma once

#include "data/import/import_plan.h"

// Tells how a file is read and what its categories mean.
void tellFindings(const ImportSurvey& survey, const ImportPlan& plan, ImportMessages& messages);
