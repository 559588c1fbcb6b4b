#include "data/import/import_form.h"

#include <algorithm>

#include "data/import/cell_reading.h"
#include "data/import/text_hash.h"

namespace {

constexpr Index mostRecords = 200; // that the form is found out from

// What the head of a file looks like under one delimiter.
struct Head {
    Index records = 0;  // neither comments nor blank, the first of them included
    Index width = 0;    // the most frequent count of cells, of the later ones where there are any
    Index frequency = 0;
    Index numbers = 0;  // cells that are numbers or missing
    Index cells = 0;
    double merit = 0.0;
};

bool isNumberOrMissing(const ImportCell& cell, const MissingTexts& missing) {
    return missing.has(cell.text) || isNumberShape(shapeOf(cell.text));
}

// Calls `use` for each of the first records that are neither blank nor comments.
template <class Use>
void eachRecord(std::string_view head, bool isWhole, char delimiter, ImportRecord& record, Use use) {
    const char* at = head.data();
    const char* const last = at + head.size();
    RecordFault fault = RecordFault::none;
    char named;
    for (Index count = 0; at < last && count < mostRecords;) {
        const bool isFirst = at == head.data();
        at = cutRecord(at, last, isWhole, delimiter, record, fault);
        if (at == nullptr) return;
        if (isBlankRecord(record) || (isFirst && isDelimiterLine(record, named))) continue;
        if (hasCommentMark(record, delimiter) && hasBlankBehindMark(record)) continue;
        use(record, count++);
    }
}

// The most frequent count of cells; the first record, which may be a header without a corner, counts when it
// is alone.
void measure(std::string_view head, bool isWhole, char delimiter, const MissingTexts& missing,
             ImportRecord& record, Head& result) {
    Index counts[mostRecords] = {};
    eachRecord(head, isWhole, delimiter, record, [&](const ImportRecord& each, Index k) {
        counts[k] = each.count;
        result.records = k + 1;
        for (const ImportCell& cell : each) result.numbers += isNumberOrMissing(cell, missing);
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
    if (result.width < 2 || result.cells == 0) return;
    const double alike = static_cast<double>(result.frequency) / static_cast<double>(result.records - first);
    const bool headed = counts[0] == result.width || counts[0] == result.width - 1;
    const double numeric = static_cast<double>(result.numbers) / static_cast<double>(result.cells);
    result.merit = alike * (headed ? 1.0 : 0.7) * (1.0 + numeric);
}

char findDelimiter(std::string_view head, bool isWhole, const MissingTexts& missing, ImportRecord& record) {
    char best = ',';
    double merit = 0.0;
    for (const char delimiter : {',', ';', '\t', '|'}) {
        Head found;
        measure(head, isWhole, delimiter, missing, record, found);
        if (found.merit <= merit) continue;
        merit = found.merit;
        best = delimiter;
    }
    return best;
}

char delimiterOf(Delimiter delimiter) {
    switch (delimiter) {
    case Delimiter::semicolon: return ';';
    case Delimiter::tab: return '\t';
    case Delimiter::bar: return '|';
    default: return ',';
    }
}

// What a column of the head holds, its first record apart.
struct HeadColumn {
    Index numbers;
    Index texts;
    bool filled;         // any cell that is not empty
    bool firstIsNumber;
    bool firstIsMissing; // or empty
    bool firstRecurs;
};

// Cells behind those that hold anything belong to no column.
Index filledWidth(const ImportRecord& record) {
    Index width = record.count;
    while (width > 0 && record.cells[width - 1].text.empty()) --width;
    return width;
}

bool isHeader(const Block<HeadColumn>& columns, Index count, bool hasCorner) {
    Index names = 0, numbers = 0, recurring = 0, plain = 0;
    for (Index j = 0; j < count; ++j) {
        const HeadColumn& column = columns[j];
        recurring += column.firstRecurs;
        plain += !column.firstIsNumber && !column.firstIsMissing;
        if (column.numbers == 0 || column.numbers < column.texts) continue;
        names += !column.firstIsNumber && !column.firstIsMissing;
        numbers += column.firstIsNumber;
    }
    if (names > 0) return true;
    if (numbers > 0) return hasCorner;
    return plain > 0 && recurring == 0;
}

} // namespace

bool isLabelName(std::string_view name) {
    if (name.empty()) return true;
    for (const std::string_view word : {"label", "labels", "name", "id", "no", "no.", "n", "case"}) {
        if (name.size() != word.size()) continue;
        bool same = true;
        for (std::size_t k = 0; k < word.size(); ++k) same = same && (name[k] | 0x20) == (word[k] | 0x20);
        if (same) return true;
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

bool isBlankRecord(const ImportRecord& record) {
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
    return delimiter == ',' || delimiter == ';' || delimiter == '\t' || delimiter == '|';
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
    MissingTexts missing;
    RecordReader reader;
    ErrorCode code = missing.set(options);
    if (code == success) code = reader.open(source, options.encoding, ',');
    if (code != success) return code;
    std::string_view head = reader.ahead();
    if (options.encoding == TextEncoding::found && reader.breaksOff()) {
        form.notUtf8Line = 1 + std::count(head.begin(), head.end(), '\n');
        code = reader.open(source, TextEncoding::windows1252, ',');
        if (code != success) return code;
        head = reader.ahead();
    }
    if (reader.fault() == RecordFault::noMemory) return outOfMemory;
    form.encoding = reader.encoding();
    ImportRecord record;
    const bool isWhole = reader.isWhole();
    form.delimiter = delimiterOf(options.delimiter);
    const std::size_t lineEnd = std::min(head.find_first_of("\r\n"), head.size());
    record.text = head.substr(0, lineEnd);
    char named = ',';
    form.namesDelimiter = isDelimiterLine(record, named);
    if (options.delimiter == Delimiter::found) {
        form.delimiter = form.namesDelimiter ? named : findDelimiter(head, isWhole, missing, record);
    }

    Head measured;
    measure(head, isWhole, form.delimiter, missing, record, measured);
    Block<HeadColumn> columns;
    if (columns.allocate(std::max(measured.width, Index{1})) != success) return outOfMemory;
    Block<std::uint64_t> firsts;
    if (firsts.allocate(columns.size()) != success) return outOfMemory;
    // The first record that can be a header; rows below it fill the columns.
    Index headerWidth = 0, headerFilled = 0, filled = 0, rows = 0;
    bool hasCorner = false;
    eachRecord(head, isWhole, form.delimiter, record, [&](const ImportRecord& each, Index) {
        if (headerWidth == 0) {
            if (each.count + 1 < measured.width) return;
            headerWidth = each.count;
            headerFilled = filledWidth(each);
            hasCorner = isLabelName(each.cells[0].text);
            for (Index j = 0; j < each.count && j < measured.width; ++j) {
                const std::string_view text = each.cells[j].text;
                columns[j].firstIsMissing = missing.has(text);
                columns[j].firstIsNumber = !columns[j].firstIsMissing && isNumberShape(shapeOf(text));
                firsts[j] = hashOf(text);
            }
            return;
        }
        if (each.count != measured.width) return;
        ++rows;
        filled = std::max(filled, filledWidth(each));
        for (Index j = 0; j < each.count; ++j) {
            const std::string_view text = each.cells[j].text;
            if (missing.has(text)) continue;
            ++(isNumberShape(shapeOf(text)) ? columns[j].numbers : columns[j].texts);
            columns[j].firstRecurs = columns[j].firstRecurs || hashOf(text) == firsts[j];
        }
    });
    const Index width = measured.width;
    const bool shorter = headerWidth == width - 1 && filled == width && rows > 0;
    if (shorter) {
        // The names stand one column further left than what they name.
        for (Index j = width - 1; j > 0; --j) {
            columns[j].firstIsMissing = columns[j - 1].firstIsMissing;
            columns[j].firstIsNumber = columns[j - 1].firstIsNumber;
        }
        columns[0] = {};
    }
    form.hasHeader = options.header == HeaderRow::found ? isHeader(columns, width, hasCorner || shorter)
                                                        : options.header == HeaderRow::present;
    form.isCornerless = form.hasHeader && shorter;
    form.width = width;
    form.headerWidth = width;
    if (!form.hasHeader) return success;
    if (form.isCornerless) {
        form.headerWidth = width - 1;
    } else if (headerWidth > width) {
        form.width = form.headerWidth = headerFilled; // rows that are shorter do not fit
    } else if (headerFilled < width && filled <= headerFilled) {
        form.width = form.headerWidth = headerFilled; // empty cells at the end of every row
    } else {
        form.headerWidth = headerWidth;
    }
    return success;
}
