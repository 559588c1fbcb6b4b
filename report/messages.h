#pragma once

#include "report/screens.h"

// Turns the result of an analysis into its texts and shows them: nothing for success, the texts as they are
// for a code that has none, else the report and status texts of the code. Returns the code.
//
// `shortage` is the number that tooFewSamples names: variables - samples + 3.
ErrorCode reportAnalysisCode(Screens& screens, Report& report, ErrorCode code, int shortage);

// The same for opening a data file, in the upper text and the status.
ErrorCode reportFileCode(Screens& screens, Report& report, ErrorCode code);

// The same for the spreadsheet link. Codes below have a text of their own; of any other the last set bit of
// ddeServiceKept, ddeTopicKept and ddeNotDisconnected counts, and the status is always the same.
constexpr ErrorCode ddeNotInitialized = 1;
constexpr ErrorCode ddeNotLinked = 2;
constexpr ErrorCode ddeServiceKept = 4;
constexpr ErrorCode ddeTopicKept = 8;
constexpr ErrorCode ddeNotDisconnected = 16;
constexpr ErrorCode ddeNoService = 32;
constexpr ErrorCode ddeNotExited = 64;
constexpr ErrorCode ddeNotInitiated = 256;
constexpr ErrorCode ddeNoData = 512;
ErrorCode reportDdeCode(Screens& screens, Report& report, ErrorCode code);
