#pragma once

#include <string_view>

#include "data/cell_table.h"
#include "numeric/growing_list.h"

// What a plain reading of a file takes otherwise than its writer may have meant. The words stand in
// report/doubt_messages.cpp.
enum class Doubt {
    otherSeparator, // no comma between the names, but semicolons, tabs, bars or blanks
    loneReturns,    // lines end in "\r" alone, so that they are one
    markedComment,  // a byte-order mark before a comment makes it the line of names
    longName,       // a name of more than 62 characters ended the names
    noHeader,       // names that are numbers, unless whole ones that rise
    sameNames,      // of two variables
    unnamedLabels,  // every row has exactly one cell more than there are names
    moreCells,      // rows with more cells than names, empty ones at the end aside
    quotedCommas,   // lines in which quotes hold a comma
    lostComments,   // comments that have as many cells as a sample
    lostLastLine,   // without a newline
    noLabels,       // numbers in the first column that number no samples
    totalRow,       // one of the last samples has the label of a sum or a mean
    noNumbers,      // cells; these two are counted by the data set, for the variables in use
    infinite,
};
constexpr int doubtKinds = static_cast<int>(Doubt::infinite) + 1;

// How often, and the first line of the file (from 1, comments included).
struct DoubtCount {
    long long count = 0;
    long long line = 0;
};

// So many lines of comments stand above a row and those after it.
struct CommentsAbove {
    std::int32_t row;
    long long lines;
};

// Whether a sample of this label, one of the last rows of a table, sums up the others.
bool isTotalName(std::string_view label);
constexpr std::int32_t lastRows = 3;

// What is found while a file is read. Each line is looked at once by one of the functions below, in the order
// of the file, and noteTable ends it.
struct Doubts {
    DoubtCount found[doubtKinds];        // the last two stay 0
    long long longRows = 0;              // rows with one cell more than names
    bool hasLines = false;               // read from a file
    GrowingList<CommentsAbove> comments; // by rising row
    bool ranOutOfMemory = false;         // for comments; noteTable tells

    const DoubtCount& operator[](Doubt kind) const { return found[static_cast<int>(kind)]; }
    DoubtCount& operator[](Doubt kind) { return found[static_cast<int>(kind)]; }
};

// Whether a line is a comment.
bool isComment(std::string_view line);

// The header line at line number `number`.
void noteHeader(Doubts& doubts, std::string_view line, long long number);

// Whether quotes of a cell may hold the comma that ends it: they begin it, blanks cut, but do not plainly end
// it.
inline bool opensQuotes(const char* first, const char* last) {
    if (first == last || *first != '"') return false;
    return last - first == 1 || last[-1] != '"' || (last[-2] == '"' && last - first > 2);
}

// A row's line, what is left of it behind the cells that have names, and whether one of these opens quotes.
void noteRow(Doubts& doubts, std::string_view line, std::string_view rest, bool opensQuotes,
             long long number);

// A comment above row `row`, the header being row 0, of a table with so many columns.
void noteComment(Doubts& doubts, std::string_view line, std::int32_t row, std::int32_t cols,
                 long long number);

// What stands behind the last newline.
void noteLastLine(Doubts& doubts, std::string_view line, long long number);

// The names and the labels of the whole table; what another doubt explains is then no longer one. Success or
// outOfMemory.
[[nodiscard]] ErrorCode noteTable(Doubts& doubts, const CellTable& table);

// The line of a row of the table, the header being row 0.
long long lineOfRow(const Doubts& doubts, std::int32_t row);
