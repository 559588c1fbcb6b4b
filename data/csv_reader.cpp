#include "data/csv_reader.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>

#include "data/eight_bytes.h"

namespace {

enum class Line { complete, unterminated, tooLong, none };

// Where the comments above a row of a table are noted; nowhere without doubts.
struct CommentNotes {
    Doubts* doubts = nullptr;
    std::int32_t row = 0;
    std::int32_t cols = 0;
};

// The lines of a stream without the comments. "\r\n" counts as one newline, as it does in a text stream.
class LineReader {
public:
    explicit LineReader(ByteSource& source) : source_(source) {}

    // Whether reading has failed, which looks like the end of the file.
    bool hasFailed() const { return failed_; }

    bool rewind() {
        number_ = 0;
        begin_ = end_ = 0;
        return source_.rewind();
    }

    // Of the line that was read last, from 1.
    long long number() const { return number_; }

    // The next line that is no comment, without its newline; valid until the next call.
    Line next(std::string_view& line, const CommentNotes& notes = {}) {
        for (;;) {
            const Line state = nextOfAny(line);
            if (state == Line::none || !isComment(line)) return state;
            if (notes.doubts != nullptr) noteComment(*notes.doubts, line, notes.row, notes.cols, number_);
            if (state == Line::tooLong) skipRest();
        }
    }

private:
    Line nextOfAny(std::string_view& line) {
        line = {};
        const char* newline = findNewline();
        if (newline == nullptr && available() <= longestCsvLine + 1) {
            refill();
            newline = findNewline();
        }
        if (newline == nullptr && available() == 0) return Line::none;
        ++number_;
        const std::size_t length =
            newline != nullptr ? static_cast<std::size_t>(newline - (buffer_ + begin_)) : available();
        line = {buffer_ + begin_, length};
        begin_ += length + (newline != nullptr ? 1 : 0);
        if (newline != nullptr && !line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (newline == nullptr && length > longestCsvLine) return Line::tooLong;
        if (line.size() > longestCsvLine) return Line::tooLong;
        return newline != nullptr ? Line::complete : Line::unterminated;
    }

    void skipRest() {
        if (begin_ > 0 && buffer_[begin_ - 1] == '\n') return;
        const char* newline = nullptr;
        do {
            begin_ = end_;
            refill();
            newline = findNewline();
        } while (newline == nullptr && available() > 0);
        if (newline != nullptr) begin_ = static_cast<std::size_t>(newline - buffer_) + 1;
    }

    void refill() {
        const std::size_t kept = available();
        std::memmove(buffer_, buffer_ + begin_, kept);
        begin_ = 0;
        const Index read = source_.read(buffer_ + kept, static_cast<Index>(sizeof buffer_ - kept));
        failed_ = failed_ || read < 0;
        end_ = kept + static_cast<std::size_t>(std::max<Index>(read, 0));
    }

    std::size_t available() const { return end_ - begin_; }

    const char* findNewline() const {
        return static_cast<const char*>(std::memchr(buffer_ + begin_, '\n', available()));
    }

    ByteSource& source_;
    bool failed_ = false;
    long long number_ = 0;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    char buffer_[1 << 16] = {};
};

enum class Cell { found, tooLong, none };

// The first comma of [first, last), or last.
inline const char* findComma(const char* first, const char* last) {
    if constexpr (isLowestFirst) {
        for (; last - first >= 8; first += 8) {
            const std::uint64_t found = markZeroByte(eightBytes(first) ^ everyByte(','));
            if (found != 0) return first + std::countr_zero(found) / 8;
        }
    }
    while (first < last && *first != ',') ++first;
    return first;
}

// Cuts the next cell from `line` as `text`, trimmed of spaces and double quotes; `opened` becomes true when
// it opens quotes.
inline Cell nextCell(std::string_view& line, std::string_view& text, bool& opened) {
    const char* first = line.data();
    const char* const end = first + line.size();
    while (first < end && (*first == ' ' || *first == '\t')) ++first;
    if (first == end) return Cell::none;

    const char* const comma = findComma(first, end);
    if (comma - first >= static_cast<Index>(textSlotSize)) return Cell::tooLong;
    const char* last = comma;
    line = {comma + (comma < end), end};

    while (last > first && last[-1] == ' ') --last;
    opened = opened || opensQuotes(first, last);
    while (last > first && (last[-1] == ' ' || last[-1] == '"')) --last;
    while (first < last && (*first == ' ' || *first == '"')) ++first;
    text = {first, last};
    return Cell::found;
}

std::string_view withoutReturn(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

// Files without a table have one code, those with a wrong one another.
FileCode refuse(FileRefusal& refusal, const FileRefusal& why) {
    refusal = why;
    const bool isWrong = why.cause >= RefusalCause::notText;
    return isWrong ? FileCode::malformed : FileCode::notOpened;
}

// Some systems open a folder, but do not read it.
FileRefusal readFailure() {
    return {errno == EISDIR ? RefusalCause::folder : RefusalCause::unreadable};
}

struct TableSize {
    std::int32_t rows = 0;
    std::int32_t cols = 0;
    Index characters = 0; // of all lines with their newlines, which the texts of the cells do not exceed

    Index cells() const { return Index{rows} * cols; }
};

// Finds the size of the table; the columns are those up to the last header cell that is not empty.
FileCode measure(LineReader& reader, TableSize& size, ReadingNotes& notes) {
    std::string_view line;
    const Line header = reader.next(line);
    if (header == Line::none) return refuse(notes.refusal, {RefusalCause::empty});
    const long long headerLine = reader.number();
    size.characters = std::ssize(line) + 1;
    if (header == Line::tooLong) return refuse(notes.refusal, {RefusalCause::lineTooLong, headerLine});

    line = withoutReturn(line);
    std::string_view text;
    bool opened = false;
    Cell cell = Cell::found;
    std::int32_t columns = 0, cells = 0;
    while ((cell = nextCell(line, text, opened)) == Cell::found) {
        ++cells;
        if (!text.empty() && text[0] != '\0') columns = cells;
    }
    if (cell == Cell::tooLong) notes.doubts[Doubt::longName] = {1, headerLine};
    if (columns == 0) {
        if (cell == Cell::none) return refuse(notes.refusal, {RefusalCause::empty, headerLine});
        static_cast<void>(refuse(notes.refusal, {RefusalCause::cellTooLong, headerLine, cells + 1}));
        return FileCode::notOpened;
    }

    std::int32_t rows = 1;
    Line state = header;
    while (state == Line::complete && (state = reader.next(line)) == Line::complete) {
        if (rows == std::numeric_limits<std::int32_t>::max()) return FileCode::noMemory;
        ++rows;
        size.characters += std::ssize(line) + 1;
    }
    if (state == Line::tooLong) return refuse(notes.refusal, {RefusalCause::lineTooLong, reader.number()});
    size.rows = rows;
    size.cols = columns;
    return FileCode::done;
}

ErrorCode allocateCells(const TableSize& size, CellTable& table) {
    table.rows = size.rows;
    table.cols = size.cols;
    const Index ends = size.cells();
    const Index replaced = static_cast<Index>(textSlotSize); // of the first text
    return table.texts.allocate(size.cells(), std::max(size.characters - ends, Index{0}) + replaced);
}

FileCode fill(LineReader& reader, CellTable& table, ReadingNotes& notes) {
    std::string_view line;
    TextList& texts = table.texts;
    Index cell = 0;
    for (std::int32_t row = 0; row < table.rows; ++row) {
        const Line state = reader.next(line, {&notes.doubts, row, table.cols});
        const long long number = reader.number();
        if (state == Line::none) return refuse(notes.refusal, {RefusalCause::unreadable});
        if (state == Line::tooLong) return refuse(notes.refusal, {RefusalCause::lineTooLong, number});
        if (std::memchr(line.data(), '\0', line.size()) != nullptr)
            return refuse(notes.refusal, {RefusalCause::notText, number});
        // A file that has grown since it was measured.
        if (texts.room() <= std::ssize(line)) return refuse(notes.refusal, {RefusalCause::unreadable});
        line = withoutReturn(line);
        std::string_view rest = line;
        bool opened = false;
        for (std::int32_t col = 0; col < table.cols; ++col, ++cell) {
            std::string_view text;
            const Cell found = nextCell(rest, text, opened);
            if (found == Cell::none)
                return refuse(notes.refusal, {RefusalCause::tooFewCells, number, col, table.cols});
            if (found == Cell::tooLong)
                return refuse(notes.refusal, {RefusalCause::cellTooLong, number, col + 1});
            if (cell == 0) {
                texts.setReplaceable(cell, text);
            } else {
                texts.set(cell, text);
            }
        }
        if (row == 0) {
            noteHeader(notes.doubts, line, number);
        } else {
            noteRow(notes.doubts, line, rest, opened, number);
        }
    }
    // Comments may follow, and a line that is not read.
    const Line state = reader.next(line, {&notes.doubts, table.rows, table.cols});
    if (state == Line::unterminated) noteLastLine(notes.doubts, line, reader.number());
    return noteTable(notes.doubts, table) == success ? FileCode::done : FileCode::noMemory;
}

} // namespace

FileCode readCsvSource(ByteSource& source, CellTable& table, ReadingNotes& notes) {
    table = {};
    notes = {};
    errno = 0;
    LineReader reader(source);
    TableSize size;
    FileCode code = measure(reader, size, notes);
    if (code == FileCode::done && allocateCells(size, table) != success) code = FileCode::noMemory;
    if (code == FileCode::done && !reader.rewind()) code = refuse(notes.refusal, {RefusalCause::unreadable});
    if (code == FileCode::done) code = fill(reader, table, notes);
    if (reader.hasFailed()) {
        const FileCode failure = refuse(notes.refusal, readFailure());
        if (code == FileCode::done) code = failure;
    }
    if (code != FileCode::done) table = {};
    return code;
}

FileCode readCsvStream(std::FILE* file, CellTable& table, ReadingNotes& notes) {
    FileSource source(file);
    return readCsvSource(source, table, notes);
}

FileCode readCsv(const char* path, CellTable& table, ReadingNotes& notes) {
    table = {};
    notes = {};
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) {
        notes.refusal.cause = errno == ENOENT ? RefusalCause::missing : RefusalCause::unreadable;
        return FileCode::notOpened;
    }
    const FileCode code = readCsvStream(file, table, notes);
    std::fclose(file);
    return code;
}
