#include "report/doubt_messages.h"

#include <iterator>

namespace {

struct DoubtWords {
    const char* fact;
    const char* remedy = nullptr; // besides importing the file
    bool isOnly = false;          // importing does not help
};

// In the order of Doubt, but for the cells of the last two.
constexpr DoubtWords doubtWords[] = {
    {"no comma stands between the names, but semicolons, tabs, bars or blanks, so there are no variables"},
    {"lines end in a carriage return alone, so they are read as one", "save the file with other line ends"},
    {"a byte-order mark stands before a comment, which is taken for the names",
     "save the file without the mark"},
    {"a name of more than 62 bytes ends the names, so it and what follows are no variables", "shorten it"},
    {"the names of the variables are numbers, as if a sample stood in their place",
     "put a line of names before it"},
    {"a variable has the name of an earlier one", "give it a name of its own"},
    {"every row has exactly one cell more than there are names, so each name stands one column too far left",
     "put a comma before the first"},
    {"there are more cells than names, and those behind the last name are not read"},
    {"a comma between quotes ends a cell all the same"},
    {"a comment has as many cells as a sample", "put a blank behind its mark if it is a comment"},
    {"the last line does not end in a newline, so it is not read", "end it"},
    {"the first column holds numbers, but is taken for the labels", "put a column of labels before it"},
    {"one of the last samples is called a sum or a mean of the others, but counts as a sample",
     "take it out of the file", true},
};
static_assert(std::size(doubtWords) == static_cast<std::size_t>(Doubt::noNumbers));

void writeBadCells(TextBuffer& text, const DataSet& data, Doubt kind, const DoubtWording& wording) {
    const BadCells bad = findBadCells(data, kind);
    const long long line = findDoubt(data, kind).line;
    const bool infinite = kind == Doubt::infinite;
    text.appendFormat("%lld cells are not %s, the first is row %d, column %s", bad.count,
                      infinite ? "finite" : "numbers", bad.row, bad.variable);
    if (line > 0) text.appendFormat(", line %lld", line);
    if (!infinite) text.append("; they count as the number they begin with, or 0");
    text.appendFormat("; leave such samples out with %s, or use %s\n", wording.omit, wording.import);
}

} // namespace

int countDoubts(const DataSet& data) {
    int kinds = 0;
    for (int kind = 0; kind < doubtKinds; ++kind) {
        if (findDoubt(data, static_cast<Doubt>(kind)).count > 0) ++kinds;
    }
    return kinds;
}

void writeDoubts(TextBuffer& text, const DataSet& data, const DoubtWording& wording) {
    for (int number = 0; number < doubtKinds; ++number) {
        const Doubt kind = static_cast<Doubt>(number);
        const DoubtCount found = findDoubt(data, kind);
        if (found.count == 0) continue;
        text.append(wording.prefix);
        if (kind >= Doubt::noNumbers) {
            writeBadCells(text, data, kind, wording);
            continue;
        }
        text.appendFormat("line %lld", found.line);
        if (found.count > 1) text.appendFormat(", the first of %lld", found.count);
        const DoubtWords& words = doubtWords[number];
        text.appendFormat(": %s; ", words.fact);
        if (words.remedy != nullptr) text.append(words.remedy);
        if (!words.isOnly)
            text.appendFormat("%suse %s", words.remedy != nullptr ? ", or " : "", wording.import);
        text.append("\n");
    }
}

void writeRefusal(TextBuffer& text, const FileRefusal& refusal, const DoubtWording& wording) {
    if (refusal.line > 0) text.appendFormat("line %lld: ", refusal.line);
    switch (refusal.cause) {
    case RefusalCause::none:
        return;
    case RefusalCause::missing:
        text.append("there is no such file\n");
        return;
    case RefusalCause::unreadable:
        text.append("the file cannot be read\n");
        return;
    case RefusalCause::folder:
        text.append("this is a folder\n");
        return;
    case RefusalCause::empty:
        text.append("there is no line of names");
        break;
    case RefusalCause::notText:
        text.append("a NUL stands in it, so this is no text, or one in UTF-16");
        break;
    case RefusalCause::lineTooLong:
        text.append("it has more than 4,095 bytes");
        break;
    case RefusalCause::cellTooLong:
        text.appendFormat("cell %d has more than 62 bytes", refusal.cells);
        break;
    case RefusalCause::tooFewCells:
        text.appendFormat(refusal.cells == 0 ? "it is empty" : "it has %d of %d cells", refusal.cells,
                          refusal.names);
        break;
    }
    text.appendFormat("; use %s\n", wording.import);
}

void writeLeftOut(TextBuffer& text, const DataSet& data) {
    text.appendFormat("%d of %d samples left out", data.leftOut, data.leftOut + data.loaded.samples);
    const char* separator = "; missing cells: ";
    for (std::int32_t col = 1; col < data.cells.cols; ++col) {
        if (data.missing[col].count() == 0) continue;
        text.appendFormat("%s%s %lld", separator, data.cells.cell(0, col), data.missing[col].count());
        separator = ", ";
    }
    text.append("\n");
}

void writeDoubtStatus(TextBuffer& status, const DataSet& data) {
    if (data.leftOut > 0) {
        status.appendFormat("; %d of %d samples left out", data.leftOut, data.leftOut + data.loaded.samples);
    }
    const int kinds = countDoubts(data);
    if (kinds > 0) status.appendFormat("; %d doubt%s, see Tools, Check Data", kinds, kinds > 1 ? "s" : "");
}
