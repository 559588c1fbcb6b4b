#pragma once

#include "report/report_facts.h"
#include "report/structure.h"

// Appends a report as JSON in UTF-8: what was run, then its parts with names uncut and numbers in full
// precision (docs/json.md).
void writeJsonReport(const ReportFacts& facts, const ReportStructure& structure, TextBuffer& document);

// The same for a run that failed: the status and the text of the failure.
void writeJsonFailure(std::string_view status, std::string_view failure, TextBuffer& document);

// A text in quotes, and a number with the fewest digits that give the same double again; what is not finite
// is the text "nan", "inf" or "-inf".
void appendJsonText(TextBuffer& document, std::string_view text);
void appendJsonNumber(TextBuffer& document, double value);
