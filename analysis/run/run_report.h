#pragma once

#include "analysis/run/analysis_run.h"
#include "report/cells.h"
#include "report/screens.h"

// How every report of an analysis begins and ends.

struct ReportOpening {
    const char* title;
    const char* option = nullptr; // the line under the title, which begins "--"; null: none
    const char* status = nullptr; // what the status says behind "status : "; null: the title
    bool isSpaced = true;         // an empty line before the first table
};

// Clears the lower text and the status, writes title, option line and status, and sets the formats of the
// working data in the widths of the settings.
void openReport(AnalysisRun& run, const ReportOpening& opening);

// The same behind what the lower text holds; the formats stay as they are.
void continueReport(AnalysisRun& run, const ReportOpening& opening);

// Adds statistics to those that run.deviations names: under classic numerics alone, each once. The driver
// says in one place which of its statistics deviate from a textbook's by more than the last digits.
void noteDeviation(AnalysisRun& run, const char* statistics);

// Shows the report and its status.
void closeReport(Screens& screens, const Report& report);
