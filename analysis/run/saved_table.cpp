#include "analysis/run/saved_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

#include "analysis/run/saved_name.h"
#include "data/csv_reader.h"
#include "data/doubts.h"

namespace {

constexpr Index firstCapacity = 65'536;
constexpr const char* corner = "label"; // above the labels
constexpr std::size_t longestNumber = 24;

// What a cell begins with so that it is read again as it is: a label that looks like a comment a blank, and a
// tab, which would be cut, a quotation mark.
std::string_view prefixOf(std::string_view cell, bool isFirst) {
    if (cell.substr(0, 1) == "\t") return "\"";
    return isFirst && isComment(cell) ? " " : "";
}

// Cells of a spreadsheet can hold what separates cells and lines here.
void appendCell(TextBuffer& text, std::string_view cell, bool isFirst) {
    text.append(prefixOf(cell, isFirst));
    for (std::size_t end; (end = cell.find_first_of(",\n")) != std::string_view::npos;
         cell.remove_prefix(end + 1)) {
        text.append(cell.substr(0, end));
        text.append(" ");
    }
    text.append(cell);
}

void appendCells(TextBuffer& text, const DataSet& data, std::int32_t row) {
    const CellTable& cells = data.cells;
    appendCell(text, row == 0 ? corner : cells.cell(row, 0), true);
    for (std::int32_t col = 1; col < cells.cols; ++col) {
        if (data.useFlags[col] == 0) continue;
        text.append(",");
        appendCell(text, cells.cell(row, col), false);
    }
}

// The shortest number that is read again as the same.
void appendValue(TextBuffer& text, double value) {
    char digits[longestNumber];
    text.append(",");
    if (!std::isfinite(value)) {
        text.append("NA");
        return;
    }
    const char* end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    text.append({digits, static_cast<std::size_t>(end - digits)});
}

// Of the cells of a row, without those that a remedy takes away, with their commas.
std::size_t lengthOf(const DataSet& data, std::int32_t row, const Block<std::int32_t>& isUsed) {
    const auto length = [&](const char* cell, bool isFirst) {
        return prefixOf(cell, isFirst).size() + std::strlen(cell);
    };
    std::size_t sum = length(row == 0 ? corner : data.cells.cell(row, 0), true);
    for (std::int32_t col = 1; col < data.cells.cols; ++col) {
        if (isUsed[col] != 0) sum += 1 + length(data.cells.cell(row, col), false);
    }
    return sum;
}

// What the columns take at most, other values than the present ones included.
std::size_t roomForColumns(const AnalysisRun& run, bool ofNames) {
    std::size_t room = 0;
    for (Index k = 0; k < run.columns.count; ++k) {
        const ColumnName name = uniqueColumnName(run.data.cells, run.columns.names[k]);
        room += 1 + (ofNames ? std::strlen(name.text) : longestNumber);
    }
    return room;
}

// The row whose line passes by most what can be read again; -1 when none does.
std::int32_t longestRow(const AnalysisRun& run, const Block<std::int32_t>& isUsed) {
    const std::size_t names = roomForColumns(run, true), values = roomForColumns(run, false);
    std::size_t longest = longestCsvLine;
    std::int32_t found = -1;
    for (std::int32_t row = 0; row < run.data.cells.rows; ++row) {
        const std::size_t length = lengthOf(run.data, row, isUsed) + (row == 0 ? names : values);
        if (length <= longest) continue;
        longest = length;
        found = row;
    }
    return found;
}

// The column with the longest cell of a row among those that can go; 0 when none can.
std::int32_t longestCell(const CellTable& cells, std::int32_t row, const Block<std::int32_t>& isUsed,
                         const Block<std::int32_t>& isKept) {
    std::int32_t found = 0;
    for (std::int32_t col = 1; col < cells.cols; ++col) {
        if (isUsed[col] == 0 || isKept[col] != 0) continue;
        if (found == 0 || std::strlen(cells.cell(row, col)) > std::strlen(cells.cell(row, found)))
            found = col;
    }
    return found;
}

} // namespace

ErrorCode writeSavedTable(const AnalysisRun& run, TextBuffer& text) {
    const DataSet& data = run.data;
    const SampleColumns& columns = run.columns;
    const ErrorCode code = text.allocate(firstCapacity, TextBuffer::Growth::growing);
    if (code != success) return code;
    appendCells(text, data, 0);
    for (Index k = 0; k < columns.count; ++k) {
        text.append(",");
        text.append(uniqueColumnName(data.cells, columns.names[k]).text);
    }
    text.append("\n");
    Index sample = 0;
    for (std::int32_t row = 1; row < data.cells.rows; ++row) {
        const bool hasValues = !isLeftOut(data, row);
        appendCells(text, data, row);
        for (Index k = 0; k < columns.count; ++k) {
            appendValue(text, hasValues ? columns.values(sample, k) : std::nan(""));
        }
        text.append("\n");
        if (hasValues) ++sample;
    }
    return text.ranOutOfMemory() ? outOfMemory : success;
}

bool canBeReadAgain(const TextBuffer& text) {
    std::size_t begun = 0; // of a line in the pieces before
    for (std::string_view rest : text) {
        for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos; begun = 0) {
            if (begun + end > longestCsvLine) return false;
            rest.remove_prefix(end + 1);
        }
        begun += rest.size();
    }
    return true;
}

ErrorCode findRemedy(const AnalysisRun& run, const Block<std::int32_t>& isKept, Remedy& remedy) {
    const DataSet& data = run.data;
    Block<std::int32_t> isUsed;
    const ErrorCode code = isUsed.allocate(data.useFlags.size());
    if (code != success) return code;
    std::copy(data.useFlags.begin(), data.useFlags.end(), isUsed.begin());
    remedy = {};
    for (;;) {
        const std::int32_t row = longestRow(run, isUsed);
        if (row < 0) break;
        const std::int32_t column = longestCell(data.cells, row, isUsed, isKept);
        if (column == 0 || remedy.count + data.exclusion.count == ExclusionList::slotCount) return success;
        remedy.columns[remedy.count++] = column;
        isUsed[column] = 0;
    }
    remedy.helps = true;
    return success;
}
