#pragma once

#include <span>

#include "data/printf_format.h"
#include "data/text_list.h"
#include "report/report.h"

// What a report is made of. Every caption, heading, label and value of an analysis goes through here with its
// whole text and its full precision; the functions append the printed form to the lower text in the formats
// that are set (report/table_formats.h) and hand the whole to the report's structure, if it has one. Each
// cell but the first of a row is preceded by ",", and each row ends with a newline. Names are cut to the
// width that they are given, values never.

// The width of a column of numbers and how many decimals it shows.
struct CellFormat {
    int width;
    int decimals;
};

// What a table that does not adapt to its values is printed in.
constexpr CellFormat wideCell = {18, 12};
constexpr CellFormat wideCount = {18, 0};

// A number as a text of the report, for captions and option lines.
struct NumberText {
    char text[numberSize];
};
NumberText numberText(double value, int width, int decimals);

// "prefix 1", "prefix 2", ... of an index from 0.
struct NumberedName {
    char text[textSlotSize];
};
NumberedName numberedName(const char* prefix, Index index);

// Empties the lower text.
void clearReport(Report& report);
// Whether there was memory for all that was written to it.
bool isComplete(const Report& report);

// The line that a report begins with, behind an empty one, and the line under it, which begins "--".
void writeTitle(Report& report, const char* title);
void writeOptionLine(Report& report, const char* line);

// A line above a table, or in the place of one.
void writeCaption(Report& report, const char* text);
[[gnu::format(PRINTF_KIND, 2, 3)]] void writeCaptionFormat(Report& report, const char* format, ...);
// The empty line behind a table or a title.
void endTable(Report& report);

// "  n," and the label cell; headings follow.
void startHeader(Report& report, const char* label = "");
// "%3d," of a number from 1 (0 where it does not count) and the label; values follow.
void startRow(Report& report, Index number, const char* label);
// A row that goes on with the one above: no number.
void startUnnumberedRow(Report& report, const char* label);
void endRow(Report& report);

// The same with a label cell of another width.
void startHeader(Report& report, const char* label, int labelWidth);
void startRow(Report& report, Index number, const char* label, int labelWidth);
void startUnnumberedRow(Report& report, const char* label, int labelWidth, const char* mark = "   ");

void writeName(Report& report, const char* name);            // a heading in the width of a column
void writeText(Report& report, const char* text, int width); // cut to the width and right-justified in it
void writeValue(Report& report, double value, int slot);     // in the formats that are set
void writeCell(Report& report, double value, CellFormat format);
void writeInteger(Report& report, std::int64_t value, int width);

// A labelled row of numbers in one format.
void writeCells(Report& report, Index number, const char* label, std::span<const double> values,
                CellFormat format);
// A labelled row of one number.
void writeCellRow(Report& report, Index number, const char* label, double value, CellFormat format);

// The labels of the rows of a table: texts of a list from one of them on, texts given, or "prefix 1",
// "prefix 2", ...
class RowLabels {
public:
    RowLabels(const TextView& list, Index first = 0) : list_(list), first_(first) {}
    RowLabels(std::span<const char* const> texts) : texts_(texts) {}
    explicit RowLabels(const char* prefix) : prefix_(prefix) {}

    void startRow(Report& report, Index row) const; // numbered from 1

private:
    TextView list_;
    Index first_ = 0;
    std::span<const char* const> texts_;
    const char* prefix_ = nullptr;
};
