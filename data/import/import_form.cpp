#include "data/import/import_form.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "data/import/cell_reading.h"
#include "data/import/text_hash.h"
#include "data/letter_case.h"

namespace {

// Records that the form is found out from.
constexpr Index mostRecords = 200;
constexpr Index fewestRecords = 20;
// Lines of units or second names below the names.
constexpr Index mostSecondNames = 3;

// In the order of Delimiter, behind `found`.
constexpr char delimiters[] = {',', ';', '\t', '|', ' '};

// What the head of a file looks like under one delimiter.
struct Head {
    Index records = 0; // neither comments nor blank, the first of them included
    Index width = 0;   // the most frequent count of cells, of the later ones where there are any
    Index frequency = 0;
    Index cells = 0;   // below the first record
    Index numbers = 0; // those that are numbers or missing
    Index foreign = 0; // those that another delimiter stands in; commas are often decimal
    double merit = 0.0;
};

bool isNumberOrMissing(const ImportCell& cell, const MissingTexts& missing) {
    return missing.has(cell.text) || isNumberShape(shapeOf(cell.text));
}

// Calls `use` for each of the first records that are neither blank nor comments.
template <class Use>
ErrorCode eachRecord(std::string_view head, bool isWhole, char delimiter, ImportRecord& record, Use use) {
    const char* at = head.data();
    const char* const last = at + head.size();
    RecordFault fault = RecordFault::none;
    char named;
    const CellEnds ends(delimiter);
    for (Index count = 0; at < last && count < mostRecords;) {
        const bool isFirst = at == head.data();
        at = cutRecord(at, last, isWhole, ends, record, fault);
        if (at == nullptr) return fault == RecordFault::noMemory ? outOfMemory : success;
        if (isBlankRecord(record) || (isFirst && isDelimiterLine(record, named))) continue;
        if (hasCommentMark(record, delimiter) && hasBlankBehindMark(record)) continue;
        use(record, count++);
    }
    return success;
}

// The most frequent count of cells; the first record, which may be a header without a corner, counts when it
// is alone.
ErrorCode measure(std::string_view head, bool isWhole, char delimiter, const MissingTexts& missing,
                  ImportRecord& record, Head& result) {
    Index counts[mostRecords] = {};
    const ErrorCode code =
        eachRecord(head, isWhole, delimiter, record, [&](const ImportRecord& each, Index k) {
            counts[k] = each.count;
            result.records = k + 1;
            if (k == 0) return;
            for (const ImportCell& cell : each) {
                result.numbers += isNumberOrMissing(cell, missing);
                result.foreign += !cell.quoted && cell.text.find_first_of("\t;|") != std::string_view::npos;
            }
            result.cells += each.count;
        });
    const Index first = result.records > 1 ? 1 : 0;
    for (Index k = first; k < result.records; ++k) {
        const Index same = std::count(counts + first, counts + result.records, counts[k]);
        if (same > result.frequency) {
            result.frequency = same;
            result.width = counts[k];
        }
    }
    if (code != success || result.width < 2) return code;
    const double alike = static_cast<double>(result.frequency) / static_cast<double>(result.records - first);
    const double headed = counts[0] == result.width ? 1.0 : counts[0] == result.width - 1 ? 0.9 : 0.7;
    const double cells = static_cast<double>(std::max(result.cells, Index{1}));
    const double numeric = static_cast<double>(result.numbers) / cells;
    const double foreign = static_cast<double>(result.foreign) / cells;
    result.merit = alike * headed * (1.0 + numeric) * (1.0 - 0.5 * foreign);
    return success;
}

ErrorCode findDelimiter(std::string_view head, bool isWhole, const MissingTexts& missing,
                        ImportRecord& record, char& best) {
    best = ',';
    double merit = 0.0;
    for (const char delimiter : delimiters) {
        if (delimiter == ' ') continue;
        Head found;
        if (measure(head, isWhole, delimiter, missing, record, found) != success) return outOfMemory;
        if (found.merit <= merit) continue;
        merit = found.merit;
        best = delimiter;
    }
    // Blanks stand in texts, too: what they divide has to be numbers, and more of them.
    Head blanks;
    if (measure(head, isWhole, ' ', missing, record, blanks) != success) return outOfMemory;
    if (10 * blanks.numbers >= 3 * blanks.cells && 0.75 * blanks.merit > merit) best = ' ';
    return success;
}

// What a column of the head holds, the header apart.
struct HeadColumn {
    Index numbers;
    Index texts;
    Index firstTexts;    // in rows before the first with a number
    bool firstIsNumber;  // the cell of the header
    bool firstIsMissing; // or empty
    bool firstRecurs;
    std::uint64_t firstHash;
};

// The record that can be a header, and what stands below it.
struct HeadTable {
    Block<HeadColumn> columns;
    Index headerWidth = 0;  // cells of the header
    Index headerFilled = 0; // up to the last that is not empty
    Index filled = 0;       // of the rows
    Index rows = 0;
    Index firstRows = 0; // before the first with a number
    bool hasCorner = false;
    bool hasYears = false; // numbers of the header are years that go up

    void takeHeader(const ImportRecord& record, Index width, const MissingTexts& missing);
    void takeRow(const ImportRecord& record, const MissingTexts& missing);
    bool isHeaderShorter(Index width) const;
    Index secondNames(Index width) const;
    bool isHeader(Index width) const;
};

void HeadTable::takeHeader(const ImportRecord& record, Index width, const MissingTexts& missing) {
    headerWidth = record.count;
    headerFilled = filledWidth(record);
    hasCorner = isLabelName(record.cells[0].text);
    Index years = 0;
    int last = 0;
    for (Index j = 0; j < record.count && j < width; ++j) {
        const std::string_view text = record.cells[j].text;
        HeadColumn& column = columns[j];
        column.firstIsMissing = missing.has(text);
        // Names as (1) or 5% are no numbers.
        NumberDress dress;
        column.firstIsNumber = !column.firstIsMissing && isNumberShape(shapeOf(text, dress)) &&
                               !dress.isNegated && dress.unit == NumberUnit::none;
        column.firstHash = hashOf(text);
        if (!column.firstIsNumber) continue;
        int year = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), year);
        const bool isYear = error == std::errc() && end == text.data() + text.size() && text.size() == 4;
        hasYears = isYear && year > last && year < 3000 && (hasYears || years == 0);
        last = year;
        ++years;
    }
    hasYears = hasYears && years > 1;
}

void HeadTable::takeRow(const ImportRecord& record, const MissingTexts& missing) {
    bool hasNumber = false;
    for (const ImportCell& cell : record) {
        hasNumber = hasNumber || (!missing.has(cell.text) && isNumberShape(shapeOf(cell.text)));
    }
    const bool isFirst = !hasNumber && firstRows == rows;
    firstRows += isFirst;
    ++rows;
    filled = std::max(filled, filledWidth(record));
    for (Index j = 0; j < record.count; ++j) {
        const std::string_view text = record.cells[j].text;
        if (missing.has(text)) continue;
        const bool isNumber = isNumberShape(shapeOf(text));
        HeadColumn& column = columns[j];
        ++(isNumber ? column.numbers : column.texts);
        column.firstTexts += isFirst;
        column.firstRecurs = column.firstRecurs || hashOf(text) == column.firstHash;
    }
}

// The rows without numbers, above those with numbers, that hold texts in columns of numbers.
Index HeadTable::secondNames(Index width) const {
    if (firstRows > mostSecondNames || firstRows == rows) return 0;
    for (Index j = 0; j < width; ++j) {
        const HeadColumn& column = columns[j];
        if (column.numbers > 0 && column.texts > 0 && column.texts == column.firstTexts) return firstRows;
    }
    return 0;
}

// Whether the header lacks the name of the first column alone. Where the row below it could be the header, it
// is a title.
bool HeadTable::isHeaderShorter(Index width) const {
    return headerWidth == width - 1 && filled == width && rows > 0 && secondNames(width) == 0;
}

bool HeadTable::isHeader(Index width) const {
    Index names = 0, numbers = 0, recurring = 0, others = 0;
    for (Index j = 0; j < width; ++j) {
        const HeadColumn& column = columns[j];
        const bool isName = !column.firstIsNumber && !column.firstIsMissing;
        recurring += column.firstRecurs;
        others += isName;
        if (column.numbers == 0 || column.numbers < column.texts) continue;
        names += isName;
        numbers += column.firstIsNumber;
    }
    if (names > 0) return true;
    if (numbers > 0) return hasCorner || hasYears;
    return others > 0 && recurring == 0;
}

// The line of the comment right above the rows when it holds a name for each column; 0: it does not.
Index findCommentedNames(std::string_view head, bool isWhole, char delimiter, Index width,
                         ImportRecord& record) {
    const char* at = head.data();
    const char* const last = at + head.size();
    const CellEnds ends(delimiter);
    RecordFault fault = RecordFault::none;
    Index found = 0;
    for (Index line = 1; at < last; line += record.lines) {
        at = cutRecord(at, last, isWhole, ends, record, fault);
        if (at == nullptr) return 0;
        if (isBlankRecord(record)) continue;
        if (!hasCommentMark(record, delimiter) || !hasBlankBehindMark(record)) return found;
        takeMark(record);
        const bool areNames = std::none_of(record.begin(), record.end(), [](const ImportCell& cell) {
            return cell.text.empty() || isNumberShape(shapeOf(cell.text));
        });
        found = areNames && record.count == width ? line : 0;
    }
    return 0;
}

// The cells of a row, and whether there is a header and how wide it is.
ErrorCode findWidth(std::string_view head, bool isWhole, Index width, const ImportOptions& options,
                    const MissingTexts& missing, ImportRecord& record, ImportForm& form) {
    form.width = form.headerWidth = width;
    HeadTable table;
    if (width == 0) return success;
    if (table.columns.allocate(width) != success) return outOfMemory;
    const ErrorCode code =
        eachRecord(head, isWhole, form.delimiter, record, [&](const ImportRecord& each, Index) {
            if (table.headerWidth > 0) {
                if (each.count == width) table.takeRow(each, missing);
            } else if (each.count + 1 >= width && !isTitle(each, width)) {
                table.takeHeader(each, width, missing);
            }
        });
    if (code != success) return code;
    form.hasHeader = options.header == HeaderRow::present;
    const bool shorter = table.headerWidth == width - 1;
    if (options.header == HeaderRow::found) form.hasHeader = shorter || table.isHeader(width);
    if (options.header != HeaderRow::absent && !shorter && !table.isHeader(width)) {
        form.namesLine = findCommentedNames(head, isWhole, form.delimiter, width, record);
        form.hasHeader = form.hasHeader || form.namesLine > 0;
    }
    if (!form.hasHeader || form.namesLine > 0) return success;
    form.isCornerless = table.isHeaderShorter(width);
    form.secondNames = table.secondNames(width);
    form.hasTitle = form.secondNames > 0 && width == 2 && table.headerFilled == 1;
    // The names stand below a title, or below what is too short for a header.
    if (form.secondNames > 0 && (form.hasTitle || shorter)) --form.secondNames;
    if (form.isCornerless) {
        form.headerWidth = width - 1;
    } else if (table.headerWidth > width) {
        form.width = form.headerWidth = table.headerFilled; // rows that are shorter do not fit
    } else if (table.headerFilled < width && table.filled <= table.headerFilled) {
        form.width = form.headerWidth = table.headerFilled; // empty cells at the end of every row
    }
    return success;
}

// What divides the cells, how many there are in a row, and whether there is a header.
ErrorCode findCells(std::string_view head, bool isWhole, const ImportOptions& options,
                    const MissingTexts& missing, ImportRecord& record, ImportForm& form, Head& measured) {
    const std::size_t lineEnd = std::min(head.find_first_of("\r\n"), head.size());
    record.text = head.substr(0, lineEnd);
    char named = ',';
    form.namesDelimiter = isDelimiterLine(record, named);
    form.delimiter = named;
    ErrorCode code = success;
    if (options.delimiter != Delimiter::found) {
        form.delimiter = characterOf(options.delimiter);
    } else if (!form.namesDelimiter) {
        code = findDelimiter(head, isWhole, missing, record, form.delimiter);
    }
    if (code == success) code = measure(head, isWhole, form.delimiter, missing, record, measured);
    return code != success ? code : findWidth(head, isWhole, measured.width, options, missing, record, form);
}

} // namespace

char characterOf(Delimiter delimiter) {
    return delimiters[std::max(static_cast<int>(delimiter) - 1, 0)];
}

Delimiter delimiterOf(char character) {
    const char* const place = std::find(std::begin(delimiters), std::end(delimiters), character);
    return place != std::end(delimiters) ? static_cast<Delimiter>(place - delimiters + 1) : Delimiter::found;
}

bool isLabelName(std::string_view name) {
    if (name.empty()) return true;
    for (const std::string_view word : {"label", "labels", "name", "id", "no", "no.", "n", "case", "nr",
                                        "nr.", "obs", "rownames", "row.names", "unnamed: 0"}) {
        if (equalButCase(name, word)) return true;
    }
    return false;
}

bool hasCommentMark(const ImportRecord& record, char delimiter) {
    const std::string_view text = record.text;
    return text.starts_with('#') || text.starts_with("//") || (delimiter != ';' && text.starts_with(';'));
}

bool hasBlankBehindMark(const ImportRecord& record) {
    const std::size_t mark = record.text.starts_with("//") ? 2 : 1;
    return record.text.size() <= mark || record.text[mark] == ' ' || record.text[mark] == '\t';
}

void takeMark(ImportRecord& record) {
    std::string_view& text = record.cells[0].text;
    text.remove_prefix(std::min(text.find_first_not_of("#/; \t"), text.size()));
    if (!text.empty() || record.count < 2) return;
    std::copy(record.begin() + 1, record.end(), record.cells.data());
    --record.count;
}

Index filledWidth(const ImportRecord& record) {
    Index width = record.count;
    while (width > 0 && record.cells[width - 1].text.empty()) --width;
    return width;
}

bool isTitle(const ImportRecord& record, Index width) {
    return width > 2 && filledWidth(record) == 1;
}

bool isBlankRecord(const ImportRecord& record) {
    if (record.text == "\x1A") return true; // ends files of older systems
    for (const ImportCell& cell : record) {
        if (!cell.text.empty()) return false;
    }
    return true;
}

bool isDelimiterLine(const ImportRecord& record, char& delimiter) {
    std::string_view text = record.text;
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
    if (text.size() != 5 || !(text.starts_with("sep=") || text.starts_with("SEP="))) return false;
    delimiter = text[4];
    return delimiterOf(delimiter) != Delimiter::found;
}

bool isFitting(const ImportRecord& record, Index width) {
    if (record.count < width) return false;
    for (Index k = width; k < record.count; ++k) {
        if (!record.cells[k].text.empty()) return false;
    }
    return true;
}

ErrorCode findForm(ByteSource& source, const ImportOptions& options, ImportForm& form) {
    form = {};
    form.oddRows = options.oddRows;
    MissingTexts missing;
    RecordReader reader;
    ImportRecord record;
    ErrorCode code = missing.set(options);
    if (code == success) code = reader.open(source, options.encoding, ',');
    // Where lines are long, the first piece of the file does not tell enough.
    while (code == success) {
        const std::string_view head = reader.ahead();
        if (reader.fault() == RecordFault::noMemory) return outOfMemory;
        if (options.encoding == TextEncoding::found && reader.breaksOff()) {
            form.notUtf8Line = 1 + countNewlines(head);
            code = reader.open(source, TextEncoding::windows1252, ',');
            continue;
        }
        form.encoding = reader.encoding();
        Head measured;
        code = findCells(head, reader.isWhole(), options, missing, record, form, measured);
        const bool isAll = reader.isWhole() || reader.fault() != RecordFault::none;
        if (measured.records >= fewestRecords || isAll) break;
    }
    return code;
}
