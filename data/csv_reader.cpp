#include "data/csv_reader.h"

#include <cstring>
#include <limits>
#include <string_view>

namespace {

// With its newline a line holds at most 4,095 characters.
constexpr std::size_t longestLine = 4094;

enum class Line { complete, unterminated, tooLong, none };

// The lines of a stream without the comments. "\r\n" counts as one newline, as it does in a text stream.
class LineReader {
public:
    explicit LineReader(std::FILE* file) : file_(file) {}

    // The next line that is no comment, without its newline; valid until the next call.
    Line next(std::string_view& line) {
        for (;;) {
            const Line state = nextOfAny(line);
            const bool comment = line.substr(0, 1) == ";" || line.substr(0, 2) == "//";
            if (state == Line::none || !comment) return state;
            if (state == Line::tooLong) skipRest();
        }
    }

private:
    Line nextOfAny(std::string_view& line) {
        line = {};
        const char* newline = findNewline();
        if (newline == nullptr && available() <= longestLine + 1) {
            refill();
            newline = findNewline();
        }
        if (newline == nullptr && available() == 0) return Line::none;
        const std::size_t length =
            newline != nullptr ? static_cast<std::size_t>(newline - (buffer_ + begin_)) : available();
        line = {buffer_ + begin_, length};
        begin_ += length + (newline != nullptr ? 1 : 0);
        if (newline != nullptr && !line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (newline == nullptr && length > longestLine) return Line::tooLong;
        if (line.size() > longestLine) return Line::tooLong;
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
        end_ = kept + std::fread(buffer_ + kept, 1, sizeof buffer_ - kept, file_);
    }

    std::size_t available() const { return end_ - begin_; }

    const char* findNewline() const {
        return static_cast<const char*>(std::memchr(buffer_ + begin_, '\n', available()));
    }

    std::FILE* file_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    char buffer_[1 << 16] = {};
};

enum class Cell { found, tooLong, none };

// Cuts the next cell from `line` into `slot`, trimmed of spaces and double quotes.
Cell nextCell(std::string_view& line, TextSlot& slot) {
    const char* at = line.data();
    const char* const end = at + line.size();
    while (at < end && (*at == ' ' || *at == '\t')) ++at;
    if (at == end) return Cell::none;

    const char* first = at;
    while (at < end && *at != ',' && static_cast<std::size_t>(at - first) < textSlotSize) ++at;
    if (static_cast<std::size_t>(at - first) == textSlotSize) return Cell::tooLong;
    const char* last = at;
    if (at < end) ++at;
    line.remove_prefix(static_cast<std::size_t>(at - line.data()));

    while (last > first && (last[-1] == ' ' || last[-1] == '"')) --last;
    while (first < last && (*first == ' ' || *first == '"')) ++first;
    const std::size_t length = static_cast<std::size_t>(last - first);
    std::memcpy(slot.text, first, length);
    slot.text[length] = '\0';
    return Cell::found;
}

std::string_view withoutReturn(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

// Finds the size of the table; the columns are those up to the last header cell that is not empty.
FileCode measure(std::FILE* file, CellTable& table) {
    LineReader reader(file);
    std::string_view line;
    const Line header = reader.next(line);
    if (header == Line::none) return FileCode::notOpened;
    if (header == Line::tooLong) return FileCode::malformed;

    line = withoutReturn(line);
    TextSlot slot;
    std::int32_t columns = 0;
    for (std::int32_t count = 1; nextCell(line, slot) == Cell::found; ++count) {
        if (slot.text[0] != '\0') columns = count;
    }
    if (columns == 0) return FileCode::notOpened;

    std::int32_t rows = 1;
    Line state = header;
    while (state == Line::complete && (state = reader.next(line)) == Line::complete) {
        if (rows == std::numeric_limits<std::int32_t>::max()) return FileCode::noMemory;
        ++rows;
    }
    if (state == Line::tooLong) return FileCode::malformed;
    table.rows = rows;
    table.cols = columns;
    return FileCode::done;
}

FileCode fill(std::FILE* file, CellTable& table) {
    LineReader reader(file);
    TextSlot* slot = table.cells.data();
    for (std::int32_t row = 0; row < table.rows; ++row) {
        std::string_view line;
        const Line state = reader.next(line);
        if (state == Line::none) return FileCode::notOpened;
        if (state == Line::tooLong) return FileCode::malformed;
        if (std::memchr(line.data(), '\0', line.size()) != nullptr) return FileCode::malformed;
        line = withoutReturn(line);
        for (std::int32_t col = 0; col < table.cols; ++col, ++slot) {
            if (nextCell(line, *slot) != Cell::found) return FileCode::malformed;
        }
    }
    return FileCode::done;
}

} // namespace

FileCode readCsvStream(std::FILE* file, CellTable& table) {
    table = {};
    FileCode code = measure(file, table);
    if (code == FileCode::done && table.cells.allocate(Index{table.rows} * table.cols) != success)
        code = FileCode::noMemory;
    if (code == FileCode::done && std::fseek(file, 0, SEEK_SET) != 0) code = FileCode::notOpened;
    if (code == FileCode::done) code = fill(file, table);
    // A read that failed looks like the end of the file.
    if (code == FileCode::done && std::ferror(file) != 0) code = FileCode::notOpened;
    if (code != FileCode::done) table = {};
    return code;
}

FileCode readCsv(const char* path, CellTable& table) {
    table = {};
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return FileCode::notOpened;
    const FileCode code = readCsvStream(file, table);
    std::fclose(file);
    return code;
}
