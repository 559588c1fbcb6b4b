#pragma once

#include "data/import/import_form.h"

// What is passed over in a file, and the first line of each.
struct PassedOver {
    Index comments = 0, firstComment = 0;
    Index blanks = 0, firstBlank = 0;               // between rows
    Index odd = 0, firstOdd = 0, firstOddCells = 0; // rows of another number of cells
    Index shorter = 0;                              // of them those below the header that lack cells
    Index secondNames = 0, firstSecondName = 0;     // lines of units or second names
    Index filled = 0, firstFilled = 0;              // rows of fewer cells that are taken
};

// The header and the rows of a table, without what is around them.
class ImportRows {
public:
    [[nodiscard]] ErrorCode open(ByteSource& source, const ImportForm& form);
    // The header first, if the form has one, then the rows; false at the end and at a fault.
    bool next(ImportRecord& record);

    bool isHeader() const { return isHeader_; }
    RecordFault fault() const { return hasNoMemory_ ? RecordFault::noMemory : reader_.fault(); }
    Index faultLine() const { return reader_.line(); }
    std::uint64_t checksum() const { return reader_.checksum(); }
    const PassedOver& passedOver() const { return passedOver_; }

private:
    bool isComment(const ImportRecord& record) const;
    bool isTitleHere(const ImportRecord& record, Index width) const;
    bool areSecondNames(const ImportRecord& record) const;

    RecordReader reader_;
    ImportForm form_;
    PassedOver passedOver_;
    Index blanks_ = 0, firstBlank_ = 0; // since the last row
    bool isFirst_ = true;
    bool isHeader_ = false;
    bool hadRow_ = false; // below the header
    bool hasNoMemory_ = false;
    bool hadHeader_ = false;
};
