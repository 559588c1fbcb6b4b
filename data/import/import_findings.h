#pragma once

#include "data/import/import_plan.h"

// What a survey and its plan found out, as the options that say it; what is not decided stays `found`.
ImportOptions foundOptions(const ImportSurvey& survey, const ImportPlan& plan);

// Tells how a file is read and what its categories mean.
void tellFindings(const ImportSurvey& survey, const ImportPlan& plan, ImportMessages& messages);
