#include "data/import/import_rows.h"

#include <algorithm>
#include <cstring>

#include "data/import/cell_reading.h"

namespace {

// Puts empty cells behind those that are there.
bool fillRecord(ImportRecord& record, Index width) {
    if (width > record.cells.size() && record.cells.grow(width) != success) return false;
    while (record.count < width) record.cells[record.count++] = {};
    return true;
}

bool hasNumber(const ImportRecord& record) {
    return std::any_of(record.begin(), record.end(),
                       [](const ImportCell& cell) { return isNumberShape(shapeOf(cell.text)); });
}

// Quotes that are written twice become one, in place.
void joinQuotes(std::string_view& text) {
    char* const bytes = const_cast<char*>(text.data());
    std::size_t length = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        bytes[length++] = text[at];
        if (text[at] == '"') ++at;
    }
    text = {bytes, length};
}

// ="007" is how a spreadsheet is made to keep digits as they stand.
void takeFormula(std::string_view& text) {
    if (text.size() < 3 || text[0] != '=' || text[1] != '"' || text.back() != '"') return;
    text = text.substr(2, text.size() - 3);
}

} // namespace

ErrorCode ImportRows::open(ByteSource& source, const ImportForm& form) {
    form_ = form;
    passedOver_ = {};
    blanks_ = firstBlank_ = 0;
    isFirst_ = true;
    isHeader_ = hadRow_ = hasNoMemory_ = false;
    hadHeader_ = !form.hasHeader;
    return reader_.open(source, form.encoding, form.delimiter);
}

// A line that divides like the table is data, unless a blank stands behind its mark.
bool ImportRows::isComment(const ImportRecord& record) const {
    if (!hasCommentMark(record, form_.delimiter)) return false;
    if (hasBlankBehindMark(record)) return true;
    return record.count != form_.width && record.count != (hadHeader_ ? form_.width : form_.headerWidth);
}

// What stands alone in its row: a title above the names, and below them what the user leaves out.
bool ImportRows::isTitleHere(const ImportRecord& record, Index width) const {
    if (hadHeader_) return form_.oddRows == OddRows::leftOut && isTitle(record, width);
    return form_.hasHeader && (isTitle(record, width) || (form_.hasTitle && passedOver_.odd == 0));
}

// Units or second names right below the names.
bool ImportRows::areSecondNames(const ImportRecord& record) const {
    return hadHeader_ && !hadRow_ && form_.oddRows != OddRows::refused &&
           passedOver_.secondNames < form_.secondNames && isFitting(record, form_.width) &&
           !hasNumber(record);
}

bool ImportRows::next(ImportRecord& record) {
    while (reader_.next(record)) {
        char delimiter;
        const bool first = isFirst_;
        isFirst_ = false;
        if (first && form_.namesDelimiter && isDelimiterLine(record, delimiter)) continue;
        if (isBlankRecord(record)) {
            if (blanks_++ == 0) firstBlank_ = record.line;
            continue;
        }
        const bool isNames = !hadHeader_ && record.line == form_.namesLine;
        if (isNames) {
            takeMark(record);
        } else if (isComment(record)) {
            if (passedOver_.comments++ == 0) passedOver_.firstComment = record.line;
            continue;
        }
        const Index width = hadHeader_ ? form_.width : form_.headerWidth;
        if (hadHeader_ && form_.oddRows == OddRows::filled && record.count < width) {
            if (passedOver_.filled++ == 0) passedOver_.firstFilled = record.line;
            if (!fillRecord(record, width)) {
                hasNoMemory_ = true;
                return false;
            }
        }
        if (areSecondNames(record)) {
            if (passedOver_.secondNames++ == 0) passedOver_.firstSecondName = record.line;
            continue;
        }
        if (!isFitting(record, width) || isTitleHere(record, width)) {
            if (passedOver_.odd++ == 0) {
                passedOver_.firstOdd = record.line;
                passedOver_.firstOddCells = filledWidth(record);
            }
            passedOver_.shorter += hadHeader_ && record.count < width;
            continue;
        }
        if (blanks_ > 0 && hadHeader_) {
            if (passedOver_.blanks == 0) passedOver_.firstBlank = firstBlank_;
            passedOver_.blanks += blanks_;
        }
        blanks_ = 0;
        isHeader_ = !hadHeader_;
        hadRow_ = hadHeader_;
        hadHeader_ = true;
        for (Index k = 0; k < record.count && k < form_.width; ++k) {
            ImportCell& cell = record.cells[k];
            if (cell.doubled) joinQuotes(cell.text);
            takeFormula(cell.text);
        }
        return true;
    }
    return false;
}
