#include "report/import_text.h"

#include <algorithm>
#include <cstring>

#include "data/word_list.h"

namespace {

constexpr std::int32_t mostColumns = 60;
constexpr int widestColumn = 16;

// Columns among which that of the labels can be chosen.
constexpr Index mostListedColumns = 200;

int lengthOf(const char* cell) {
    return static_cast<int>(std::strlen(cell));
}

void writeColumn(TextBuffer& text, Index column, const ImportPreview& preview) {
    const std::string_view name = preview.names[column];
    text.appendFormat("#%lld", static_cast<long long>(column) + 1);
    if (!name.empty()) text.append(" ");
    text.append(name.substr(0, 60));
}

} // namespace

void writePreview(TextBuffer& text, const CellTable& cells) {
    const std::int32_t cols = std::min(cells.cols, mostColumns);
    int widths[mostColumns] = {};
    for (std::int32_t row = 0; row < cells.rows; ++row) {
        for (std::int32_t col = 0; col < cols; ++col) {
            widths[col] = std::max(widths[col], std::min(lengthOf(cells.cell(row, col)), widestColumn));
        }
    }
    for (std::int32_t row = 0; row < cells.rows; ++row) {
        for (std::int32_t col = 0; col < cols; ++col) {
            const char* const cell = cells.cell(row, col);
            const int length = std::min(lengthOf(cell), widestColumn);
            const char* const mark = length < lengthOf(cell) ? "~" : " ";
            if (col == 0) {
                text.appendFormat("%-*.*s%s", widths[col], length, cell, mark);
            } else {
                text.appendFormat(" %*.*s%s", widths[col], length, cell, mark);
            }
        }
        text.append(cells.cols > cols ? " ...\n" : "\n");
    }
}

bool writeChoiceEntry(TextBuffer& text, ImportChoice choice, int entry, const ImportOptions& options,
                      const ImportPreview& preview, const ImportMessages& messages) {
    const char* const words = namesOf(choice).words;
    const int found = preview.words[static_cast<int>(choice)];
    const bool isLabels = choice == ImportChoice::labels;
    if (entry > 0) {
        const std::string_view word = wordOf(words, entry);
        const Index column = entry - 3; // behind the two words
        if (word.empty() && (!isLabels || column >= std::min(preview.names.count, mostListedColumns)))
            return false;
        text.append(word);
        if (word.empty()) writeColumn(text, column, preview);
    } else if (chosenWord(options, choice) != 0) {
        text.append("to be found");
    } else if (messages.asks(choice)) {
        text.append("please choose");
    } else if (found == 0) {
        text.append("not known yet");
    } else {
        text.append("found: ");
        if (isLabels && preview.labelColumn >= 0) {
            writeColumn(text, preview.labelColumn, preview);
        } else {
            text.append(wordOf(words, found));
        }
    }
    return true;
}
