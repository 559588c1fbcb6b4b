#include "data/doubts.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "data/byte_source.h"
#include "data/letter_case.h"
#include "data/number.h"

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// What cutting a cell leaves out.
bool isPadding(char c) {
    return isBlank(c) || c == '"' || c == '\r';
}

void note(Doubts& doubts, Doubt kind, long long line) {
    DoubtCount& found = doubts[kind];
    if (found.count++ == 0) found.line = line;
}

void forget(Doubts& doubts, Doubt kind) {
    doubts[kind] = {};
}

// The number of the last cell that is not empty, from 1; 0 without one.
std::int32_t lastCell(std::string_view line) {
    std::int32_t last = 0, cell = 1;
    for (const char c : line) {
        if (c == ',') {
            ++cell;
        } else if (!isPadding(c)) {
            last = cell;
        }
    }
    return last;
}

// Whether quotes that open a cell and close it have a comma between them.
bool hasQuotedComma(std::string_view line) {
    std::size_t quote = line.find('"');
    while (quote != std::string_view::npos) {
        std::size_t before = quote;
        while (before > 0 && isBlank(line[before - 1])) --before;
        if (before > 0 && line[before - 1] != ',') {
            quote = line.find('"', quote + 1);
            continue;
        }
        std::size_t close = line.find('"', quote + 1);
        while (close != std::string_view::npos && line.substr(close + 1, 1) == "\"")
            close = line.find('"', close + 2);
        if (close == std::string_view::npos) return false;
        if (std::memchr(line.data() + quote, ',', close - quote) != nullptr) return true;
        quote = line.find('"', close + 1);
    }
    return false;
}

bool noteQuotes(Doubts& doubts, std::string_view line, long long number) {
    if (!hasQuotedComma(line)) return false;
    note(doubts, Doubt::quotedCommas, number);
    return true;
}

// Lines are found again by the comments above them.
void countComment(Doubts& doubts, std::int32_t row) {
    GrowingList<CommentsAbove>& comments = doubts.comments;
    const bool isFirst = comments.size() == 0;
    if (!isFirst && comments.last().row == row) {
        ++comments.last().lines;
        return;
    }
    const long long above = isFirst ? 0 : comments.last().lines;
    if (!comments.add({row, above + 1})) doubts.ranOutOfMemory = true;
}

bool isWhole(double value) {
    return std::isfinite(value) && value == std::trunc(value);
}

// The names without the label column's.
void noteNames(Doubts& doubts, const CellTable& table, long long line) {
    bool numbers = table.cols > 1, rise = true;
    double previous = -HUGE_VAL;
    for (std::int32_t col = 1; col < table.cols; ++col) {
        const char* const name = table.cell(0, col);
        for (std::int32_t other = 1; other < col; ++other) {
            if (std::strcmp(name, table.cell(0, other)) != 0) continue;
            note(doubts, Doubt::sameNames, line);
            break;
        }
        double value = 0.0;
        numbers = numbers && readNumber(name, value);
        rise = rise && isWhole(value) && value > previous;
        previous = value;
    }
    if (numbers && !rise) note(doubts, Doubt::noHeader, line);
}

// Whether numbers below this name are labels.
bool announcesLabels(std::string_view name) {
    if (name.starts_with(byteOrderMark)) name.remove_prefix(byteOrderMark.size());
    while (!name.empty() && isPadding(name.front())) name.remove_prefix(1);
    for (const std::string_view known : {"", "label", "name", "id", "no", "n", "case", "year", "date"}) {
        if (equalButCase(name, known)) return true;
    }
    return false;
}

// Whether numbers differ, by a hash table at most half full, in which 0 is a free slot.
ErrorCode areDistinct(const Block<double>& values, bool& distinct) {
    Block<double> slots;
    const auto size = static_cast<Index>(std::bit_ceil(static_cast<std::size_t>(2 * values.size())));
    if (slots.allocate(size) != success) return outOfMemory;
    distinct = std::count(values.begin(), values.end(), 0.0) < 2;
    for (const double value : values) {
        if (value == 0.0) continue;
        const std::uint64_t hash = std::bit_cast<std::uint64_t>(value) * 0x9e3779b97f4a7c15U;
        Index slot = static_cast<Index>(hash >> 32) & (size - 1);
        while (slots[slot] != 0.0 && slots[slot] != value) slot = (slot + 1) & (size - 1);
        if (slots[slot] == value) distinct = false;
        slots[slot] = value;
    }
    return success;
}

// Labels that are numbers, but not all different whole ones, are most likely values.
ErrorCode noteLabels(Doubts& doubts, const CellTable& table) {
    const std::int32_t count = table.rows - 1;
    if (count < 1 || announcesLabels(table.cell(0, 0)) || !isNumber(table.cell(1, 0))) return success;
    Block<double> values;
    if (values.allocate(count) != success) return outOfMemory;
    bool whole = true, rise = true, fall = true;
    for (std::int32_t k = 0; k < count; ++k) {
        if (!readNumber(table.cell(k + 1, 0), values[k])) return success;
        whole = whole && isWhole(values[k]);
        rise = rise && (k == 0 || values[k] > values[k - 1]);
        fall = fall && (k == 0 || values[k] < values[k - 1]);
    }
    if (whole && !rise && !fall) {
        if (areDistinct(values, whole) != success) return outOfMemory;
    }
    if (!whole) note(doubts, Doubt::noLabels, lineOfRow(doubts, 1));
    return success;
}

} // namespace

bool isComment(std::string_view line) {
    return line.starts_with(';') || line.starts_with("//");
}

bool isTotalName(std::string_view label) {
    label = label.substr(0, label.find_first_of(":("));
    while (!label.empty() && isBlank(label.back())) label.remove_suffix(1);
    for (const std::string_view known :
         {"total", "totals", "grand total", "sum", "mean", "average", "summe", "gesamt", "gesamtsumme",
          "gesamtergebnis", "ergebnis", "mittelwert", "somme", "moyenne", "totale", "suma", "promedio"}) {
        if (equalButCase(label, known)) return true;
    }
    return false;
}

void noteHeader(Doubts& doubts, std::string_view line, long long number) {
    doubts.hasLines = true;
    if (line.find('\r') != std::string_view::npos) {
        note(doubts, Doubt::loneReturns, number);
        return;
    }
    const bool marked = line.starts_with(byteOrderMark);
    if (marked && isComment(line.substr(byteOrderMark.size()))) {
        note(doubts, Doubt::markedComment, number);
        return;
    }
    while (!line.empty() && isBlank(line.back())) line.remove_suffix(1);
    if (line.find(',') == std::string_view::npos) {
        const bool isDivided = line.find_first_of(";\t|") != std::string_view::npos;
        while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
        const bool hasBlanks = line.find(' ') != std::string_view::npos;
        if (isDivided || hasBlanks || line == "sep=") note(doubts, Doubt::otherSeparator, number);
    } else {
        noteQuotes(doubts, line, number);
    }
}

void noteRow(Doubts& doubts, std::string_view line, std::string_view rest, bool opensQuotes,
             long long number) {
    // Most rows are as they should be. Commas in quotes explain what is too much.
    if ((rest.empty() && !opensQuotes) || noteQuotes(doubts, line, number)) return;
    const std::int32_t more = lastCell(rest);
    if (more > 0) note(doubts, Doubt::moreCells, number);
    if (more == 1) ++doubts.longRows;
}

void noteComment(Doubts& doubts, std::string_view line, std::int32_t row, std::int32_t cols,
                 long long number) {
    countComment(doubts, row);
    const std::string_view text = line.substr(line.front() == ';' ? 1 : 2);
    const bool isMeant = text.empty() || isBlank(text.front());
    if (!isMeant && cols > 1 && lastCell(text) == cols) note(doubts, Doubt::lostComments, number);
}

void noteLastLine(Doubts& doubts, std::string_view line, long long number) {
    if (lastCell(line) > 0) note(doubts, Doubt::lostLastLine, number);
}

ErrorCode noteTable(Doubts& doubts, const CellTable& table) {
    if (doubts[Doubt::markedComment].count == 0) noteNames(doubts, table, lineOfRow(doubts, 0));
    if (doubts[Doubt::markedComment].count + doubts[Doubt::otherSeparator].count +
            doubts[Doubt::longName].count >
        0) {
        forget(doubts, Doubt::moreCells);
    } else if (doubts.longRows > 0 && doubts.longRows == table.rows - 1) {
        doubts[Doubt::unnamedLabels] = {1, lineOfRow(doubts, 0)};
        forget(doubts, Doubt::moreCells);
    }
    for (std::int32_t row = std::max(3, table.rows - lastRows); row < table.rows; ++row) {
        if (isTotalName(table.cell(row, 0))) note(doubts, Doubt::totalRow, lineOfRow(doubts, row));
    }
    return noteLabels(doubts, table) | (doubts.ranOutOfMemory ? outOfMemory : success);
}

long long lineOfRow(const Doubts& doubts, std::int32_t row) {
    const std::span<const CommentsAbove> comments = doubts.comments.all();
    const auto after =
        std::upper_bound(comments.begin(), comments.end(), row,
                         [](std::int32_t each, const CommentsAbove& group) { return each < group.row; });
    return row + 1LL + (after == comments.begin() ? 0 : after[-1].lines);
}
