#pragma once

#include "data/file_code.h"
#include "data/spreadsheet.h"
#include "report/screens.h"

// Turns the result of an analysis into its texts and shows them: nothing for success, the texts as they are
// for a code that has none, else the report and status texts of the code. Returns the code.
//
// `shortage` is the number that tooFewSamples names: variables - samples + 3.
ErrorCode reportAnalysisCode(Screens& screens, Report& report, ErrorCode code, int shortage);

// The same for opening a data file, in the upper text and the status.
FileCode reportFileCode(Screens& screens, Report& report, FileCode code);

// The same for the spreadsheet link, in all three. Most codes have a text of their own; of any other the last
// set bit of serviceKept, topicKept and notDisconnected counts, and the status is always the same.
LinkCode reportDdeCode(Screens& screens, Report& report, LinkCode code);
