#include "data/import/import_survey.h"

#include <algorithm>
#include <charconv>

#include "data/doubts.h"
#include "data/import/column_names.h"
#include "data/import/unicode.h"

namespace {

// Adds a cell to what is known of its column.
ErrorCode surveyCell(std::string_view cell, Index line, const MissingTexts& missing, const ColumnWish& wish,
                     ColumnSurvey& column, CategoryTexts& texts) {
    NumberDress dress;
    const CellShape shape = missing.has(cell) ? CellShape::missing : shapeOf(cell, dress);
    const int k = static_cast<int>(shape);
    if (column.counts[k]++ == 0) column.firstLines[k] = line;
    column.widest = std::max(column.widest, std::ssize(cell));
    if (shape == CellShape::missing) {
        if (!cell.empty() && column.marked++ == 0) {
            column.markedLine = line;
            const std::string_view shown = firstCharacters(cell, sizeof column.mark - 1);
            column.mark[shown.copy(column.mark, shown.size())] = '\0';
        }
        return success;
    }
    if (isNumberShape(shape)) column.takeNumber(cell, dress, line);
    if (isNumberShape(shape) && !wish.categories) return success;
    if (shape == CellShape::noValue && !wish.categories) return success;
    ErrorCode code = success;
    if (column.texts < 0) column.texts = texts.addList(code);
    if (code == success && column.texts >= 0) code = texts.add(column.texts, cell);
    return code;
}

// The beginnings of the first cells of the rows that were read last.
class LastLabels {
public:
    void add(std::string_view cell, Index line) {
        Label& label = labels_[count_++ % lastRows];
        label.length = cell.copy(label.characters, sizeof label.characters);
        label.line = line;
    }
    // The line of the first that is called a total, two rows at least above it; 0 without one.
    Index totalLine() const {
        for (Index k = std::max(Index{2}, count_ - lastRows); k < count_; ++k) {
            const Label& label = labels_[k % lastRows];
            if (isTotalName({label.characters, label.length})) return label.line;
        }
        return 0;
    }

private:
    struct Label {
        char characters[24];
        std::size_t length;
        Index line;
    };
    Label labels_[lastRows] = {};
    Index count_ = 0;
};

// Whether a label is that number.
bool isNumbered(std::string_view label, Index row) {
    Index number = -1;
    const char* const last = label.data() + label.size();
    const auto [end, error] = std::from_chars(label.data(), last, number);
    return error == std::errc() && end == last && number == row;
}

ErrorCode startColumns(const ImportOptions& options, const ImportRecord* header, ImportSurvey& survey,
                       ImportMessages& messages) {
    const ImportForm& form = survey.form;
    if (takeNames(header, form, survey.names) != success) return outOfMemory;
    if (survey.columns.allocate(form.width) != success) return outOfMemory;
    for (ColumnSurvey& column : survey.columns) column.texts = -1;
    return takeWishes(options, survey.names, survey.wishes, messages);
}

// The rows under one encoding; `fault` receives what ends the reading before its end.
ErrorCode surveyRows(ByteSource& source, const ImportOptions& options, Index mostRows, ImportSurvey& survey,
                     ImportMessages& messages, RecordFault& fault, Index& faultLine) {
    ImportRows rows;
    ImportRecord record;
    MissingTexts missing;
    DifferentTexts firstCells;
    ErrorCode code = missing.set(options);
    if (code == success) code = firstCells.start();
    if (code == success) code = rows.open(source, survey.form);
    survey.rows = survey.widestRow = survey.labelRows = 0;
    survey.texts.clear();
    survey.isCut = survey.firstIsQuoted = false;
    survey.firstCounts = true;
    bool started = false;
    Index fromZero = 0;
    LastLabels lastLabels;
    while (code == success && rows.next(record)) {
        if (!started) {
            code = startColumns(options, rows.isHeader() ? &record : nullptr, survey, messages);
            started = true;
            if (code != success || rows.isHeader()) continue;
        }
        if (survey.rows == mostRows) {
            survey.isCut = true;
            break;
        }
        ++survey.rows;
        const ImportCell& first = record.cells[0];
        if (survey.rows == 1) fromZero = first.text == "0" ? 1 : 0;
        code = firstCells.add(first.text);
        lastLabels.add(first.text, record.line);
        survey.firstIsQuoted = survey.firstIsQuoted || first.quoted;
        survey.firstCounts = survey.firstCounts && isNumbered(first.text, survey.rows - fromZero);
        if (isTitle(record, survey.form.width) && survey.labelRows++ == 0) survey.firstLabelRow = record.line;
        Index bytes = 0;
        for (Index j = 0; code == success && j < survey.form.width; ++j) {
            if (survey.wishes[j].isOut() && j > 0) continue;
            const std::string_view cell = record.cells[j].text;
            code = surveyCell(cell, record.line, missing, survey.wishes[j], survey.columns[j], survey.texts);
            bytes += std::clamp(std::ssize(cell), Index{2}, textSlotLength) + 1;
        }
        survey.widestRow = std::max(survey.widestRow, bytes);
    }
    survey.totalLine = lastLabels.totalLine();
    survey.firstIsDifferent = firstCells.areDifferent();
    survey.passedOver = rows.passedOver();
    survey.checksum = rows.checksum();
    fault = rows.fault();
    faultLine = rows.faultLine();
    if (code == success && !started) code = startColumns(options, nullptr, survey, messages);
    return code;
}

// What is wrong with a line, behind its number; null where no line is told.
const char* wordsOf(RecordFault fault) {
    switch (fault) {
    case RecordFault::none:
    case RecordFault::noMemory:
    case RecordFault::workbook:
        return nullptr;
    case RecordFault::unreadable:
        return ": the file cannot be read";
    case RecordFault::notUtf8:
        return " is no UTF-8: --encoding windows-1252 takes it otherwise";
    case RecordFault::holdsNul:
        return " holds a NUL, which no text does: --encoding utf-16 takes it otherwise";
    case RecordFault::openQuote:
        return ": a quote is opened and not closed";
    case RecordFault::afterQuote:
        return ": a text follows a closing quote (another --delimiter?)";
    case RecordFault::tooLong:
        return " is longer than 16,777,216 characters (a quote that is not closed?)";
    case RecordFault::tooWide:
        return " has more than 131,072 cells";
    }
    return nullptr;
}

// Tells a fault of the reading and where it stands.
void refuseFault(RecordFault fault, Index line, ImportMessages& messages) {
    if (fault == RecordFault::workbook)
        messages.refuse("this is a workbook, no text: save the sheet as CSV, or as text with tabs");
    const char* const words = wordsOf(fault);
    if (words != nullptr) messages.refuse("line %lld%s", static_cast<long long>(line), words);
}

} // namespace

ErrorCode surveyImport(ByteSource& source, const ImportOptions& options, Index mostRows, ImportSurvey& survey,
                       ImportMessages& messages) {
    ErrorCode code = findForm(source, options, survey.form);
    RecordFault fault = RecordFault::none;
    Index line = 0;
    if (code == success) code = surveyRows(source, options, mostRows, survey, messages, fault, line);
    if (code == success && fault == RecordFault::notUtf8 && options.encoding == TextEncoding::found) {
        // Bytes that are no UTF-8 are those of an older program.
        survey.form.notUtf8Line = line;
        survey.form.encoding = TextEncoding::windows1252;
        code = surveyRows(source, options, mostRows, survey, messages, fault, line);
    }
    if (code == illegalData && !messages.refused()) refuseFault(RecordFault::unreadable, 1, messages);
    if (code != success) return code;
    if (fault == RecordFault::noMemory) return outOfMemory;
    if (fault != RecordFault::none) {
        refuseFault(fault, line, messages);
        return illegalData;
    }
    return success;
}
