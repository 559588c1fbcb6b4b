#pragma once

#include "data/spreadsheet.h"
#include "report/screens.h"

// Turns the result of an analysis into its texts and shows them: nothing for success, the texts as they are
// for a code that has none, else the report and status texts of the code. Returns the code.
//
// `shortage` is the number that tooFewSamples names: variables - samples + 3.
ErrorCode reportAnalysisCode(Screens& screens, Report& report, ErrorCode code, int shortage);

// The same for opening a data file, in the upper text and the status.
ErrorCode reportFileCode(Screens& screens, Report& report, ErrorCode code);

// The same for the spreadsheet link, in all three. Most codes have a text of their own; of any other the last
// set bit of ddeServiceKept, ddeTopicKept and ddeNotDisconnected counts, and the status is always the same.
ErrorCode reportDdeCode(Screens& screens, Report& report, ErrorCode code);
