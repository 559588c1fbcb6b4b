#pragma once

#include "data/import/import_plan.h"

// Finds out how numbers are written from the columns that are to be variables; false with a refusal where a
// cell could be read in two ways.
bool findNumberForm(const ImportSurvey& survey, const ImportOptions& options, Index labelColumn,
                    NumberForm& form, ImportMessages& messages);
