#pragma once

#include <cstdint>
#include <string_view>

#include "data/import/text_decoder.h"

struct ImportCell {
    std::string_view text; // without its quotes and the blanks around it
    bool quoted;
    bool doubled; // holds quotes that are written twice
};

// The cells of one record, valid until the next is read.
struct ImportRecord {
    Block<ImportCell> cells;
    Index count = 0;
    Index line = 0; // that it begins in, counted from 1
    Index lines = 0;
    std::string_view text; // the whole record as it stands

    const ImportCell* begin() const { return cells.data(); }
    const ImportCell* end() const { return cells.data() + count; }
};

// The characters that end a cell without quotes: the delimiter and those of newlines. Where a blank delimits,
// a tab does too, several of them do as one, and those around a record do not.
struct CellEnds {
    explicit CellEnds(char delimiterCharacter) : delimiter(delimiterCharacter) {
        for (const char c : {delimiter, '\n', '\r'}) flags[static_cast<unsigned char>(c)] = true;
        if (areBlanks()) flags[static_cast<unsigned char>('\t')] = true;
    }
    bool areBlanks() const { return delimiter == ' '; }
    bool has(char c) const { return flags[static_cast<unsigned char>(c)]; }

    char delimiter;
    bool flags[256] = {};
};

// Why a file cannot be read as records; the line stands in the record.
enum class RecordFault {
    none,
    unreadable,
    notUtf8,
    holdsNul,
    workbook,
    openQuote,
    afterQuote,
    tooLong,
    tooWide,
    noMemory
};

// How many newlines there are: LF, CRLF or CR.
Index countNewlines(std::string_view text);

// Cuts the record that begins at `first`; the first character behind it, null when [first, last) does not
// hold all of it. A cell can stand in double quotes, with quotes written twice, delimiters and newlines in
// them (RFC 4180). `isEnd`: nothing follows `last`. With a fault the record is not whole.
const char* cutRecord(const char* first, const char* last, bool isEnd, const CellEnds& ends,
                      ImportRecord& record, RecordFault& fault);

// The records of a text whose lines end in LF, CRLF or CR.
class RecordReader {
public:
    // Starts at the beginning of the source.
    [[nodiscard]] ErrorCode open(ByteSource& source, TextEncoding encoding, char delimiter);
    // False at the end and at a fault.
    bool next(ImportRecord& record);

    RecordFault fault() const { return fault_; }
    // The line that a fault stands in.
    Index line() const { return line_; }
    TextEncoding encoding() const { return decoder_.encoding(); }
    // The text behind the last record, read ahead: at first a quarter of a million characters, with each call
    // more, up to the longest record.
    std::string_view ahead();
    bool isWhole() const { return isEnd_; } // there is no more behind it
    // Of the text that was read; the same text read in the same way has the same.
    std::uint64_t checksum() const { return checksum_; }
    bool breaksOff() const { return decoder_.fault() == TextDecoder::Fault::notUtf8; }

private:
    bool fill();
    void takeFault();

    TextDecoder decoder_;
    Block<char> buffer_;
    Index begin_ = 0;
    Index end_ = 0;
    bool isEnd_ = false;
    CellEnds ends_ = CellEnds(',');
    RecordFault fault_ = RecordFault::none;
    Index line_ = 1;
    std::uint64_t checksum_ = 0;
};
