#include "data/import/table_rows.h"

#include <cstring>

ErrorCode TableRows::open(ByteSource& source, const ImportForm& form) {
    form_ = form;
    passedOver_ = {};
    blanks_ = firstBlank_ = 0;
    isFirst_ = true;
    isHeader_ = false;
    hadHeader_ = !form.hasHeader;
    return reader_.open(source, form.encoding, form.delimiter);
}

// A line that divides like the table is data, unless a blank stands behind its mark.
bool TableRows::isComment(const ImportRecord& record) const {
    if (!hasCommentMark(record, form_.delimiter)) return false;
    if (hasBlankBehindMark(record)) return true;
    return record.count != form_.width && record.count != (hadHeader_ ? form_.width : form_.headerWidth);
}

bool TableRows::next(ImportRecord& record) {
    while (reader_.next(record)) {
        char delimiter;
        const bool first = isFirst_;
        isFirst_ = false;
        if (first && form_.namesDelimiter && isDelimiterLine(record, delimiter)) continue;
        if (isBlankRecord(record)) {
            if (blanks_++ == 0) firstBlank_ = record.line;
            continue;
        }
        if (isComment(record)) {
            if (passedOver_.comments++ == 0) passedOver_.firstComment = record.line;
            continue;
        }
        const Index width = hadHeader_ ? form_.width : form_.headerWidth;
        if (!isFitting(record, width) || (!hadHeader_ && isTitle(record, width))) {
            if (passedOver_.odd++ == 0) {
                passedOver_.firstOdd = record.line;
                passedOver_.firstOddCells = filledWidth(record);
            }
            continue;
        }
        if (blanks_ > 0 && hadHeader_) {
            if (passedOver_.blanks == 0) passedOver_.firstBlank = firstBlank_;
            passedOver_.blanks += blanks_;
        }
        blanks_ = 0;
        isHeader_ = !hadHeader_;
        hadHeader_ = true;
        // Quotes that are written twice become one.
        for (Index k = 0; k < record.count && k < form_.width; ++k) {
            ImportCell& cell = record.cells[k];
            if (!cell.doubled) continue;
            char* const bytes = const_cast<char*>(cell.text.data());
            std::size_t length = 0;
            for (std::size_t at = 0; at < cell.text.size(); ++at) {
                bytes[length++] = cell.text[at];
                if (cell.text[at] == '"') ++at;
            }
            cell.text = {bytes, length};
        }
        return true;
    }
    return false;
}
