#include "data/import/record_reader.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "data/eight_bytes.h"
#include "data/import/text_hash.h"

namespace {

constexpr Index firstSize = 1 << 18;
constexpr Index longestRecord = 1 << 24;
constexpr Index mostCells = 1 << 17;

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimmed(const char* first, const char* last) {
    while (first < last && isBlank(*first)) ++first;
    while (last > first && isBlank(last[-1])) --last;
    return {first, static_cast<std::size_t>(last - first)};
}

// The first character of [at, last) that ends a cell, or `last`. Eight at a time: lengths of cells are as
// good as random, and a branch for each costs more than the look.
const char* findEnd(const char* at, const char* last, const CellEnds& ends) {
    if (isLowestFirst && !ends.areBlanks()) {
        const std::uint64_t delimiters = everyByte(ends.delimiter);
        for (; last - at >= 8; at += 8) {
            const std::uint64_t bytes = eightBytes(at);
            const std::uint64_t found = markZeroByte(bytes ^ delimiters) |
                                        markZeroByte(bytes ^ everyByte('\n')) |
                                        markZeroByte(bytes ^ everyByte('\r'));
            if (found != 0) return at + std::countr_zero(found) / 8;
        }
    }
    while (at < last && !ends.has(*at)) ++at;
    return at;
}

// The place of the quote that closes a cell which `first` is in; null when there is none.
const char* findClosing(const char* first, const char* last, bool& doubled) {
    for (const char* at = first;; at += 2) {
        at = static_cast<const char*>(std::memchr(at, '"', static_cast<std::size_t>(last - at)));
        if (at == nullptr || at + 1 == last || at[1] != '"') return at;
        doubled = true;
    }
}

// One cell from `at` on; the delimiter or newline that ends it, or null as cutRecord. A newline at the very
// end of what is there may be the half of one.
const char* cutCell(const char* at, const char* last, bool isEnd, const CellEnds& ends, ImportCell& cell,
                    ImportRecord& record, RecordFault& fault) {
    const char* first = at;
    while (first < last && isBlank(*first) && !ends.has(*first)) ++first;
    cell.quoted = first < last && *first == '"';
    cell.doubled = false;
    if (!cell.quoted) {
        const char* const stop = findEnd(first, last, ends);
        if (stop == last && !isEnd) return nullptr;
        const char* back = stop;
        while (back > first && isBlank(back[-1])) --back;
        cell.text = {first, static_cast<std::size_t>(back - first)};
        return stop;
    }
    const char* closing = first + 1 < last ? findClosing(first + 1, last, cell.doubled) : nullptr;
    if (closing == nullptr || (closing + 1 == last && !isEnd)) {
        if (isEnd) fault = RecordFault::openQuote;
        return nullptr;
    }
    cell.text = trimmed(first + 1, closing);
    record.lines += countNewlines({first + 1, static_cast<std::size_t>(closing - first - 1)});
    const char* stop = closing + 1;
    while (stop < last && isBlank(*stop) && !ends.has(*stop)) ++stop;
    if (stop == last) return isEnd ? stop : nullptr;
    if (!ends.has(*stop)) {
        fault = RecordFault::afterQuote;
        return nullptr;
    }
    return stop;
}

} // namespace

Index countNewlines(std::string_view text) {
    Index count = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        count += text[at] == '\n' || (text[at] == '\r' && text.substr(at + 1, 1) != "\n");
    }
    return count;
}

const char* cutRecord(const char* first, const char* last, bool isEnd, const CellEnds& ends,
                      ImportRecord& record, RecordFault& fault) {
    record.count = 0;
    record.lines = 1;
    for (const char* at = first;;) {
        if (ends.areBlanks()) {
            while (at < last && isBlank(*at)) ++at;
            if (at == last && !isEnd) return nullptr;
        }
        if (record.count == record.cells.size()) {
            if (record.count >= mostCells) {
                fault = RecordFault::tooWide;
                return nullptr;
            }
            if (record.cells.grow(std::max(Index{64}, 2 * record.count)) != success) {
                fault = RecordFault::noMemory;
                return nullptr;
            }
        }
        const bool isTail =
            ends.areBlanks() && record.count > 0 && (at == last || *at == '\n' || *at == '\r');
        const char* stop = at;
        if (!isTail) stop = cutCell(at, last, isEnd, ends, record.cells[record.count], record, fault);
        if (stop == nullptr) return nullptr;
        if (!isTail) ++record.count;
        record.text = {first, static_cast<std::size_t>(stop - first)};
        if (stop == last) return stop;
        at = stop + 1;
        if (*stop == ends.delimiter || isBlank(*stop)) continue;
        if (*stop == '\n') return at;
        if (at == last) return isEnd ? at : nullptr;
        return *at == '\n' ? at + 1 : at;
    }
}

ErrorCode RecordReader::open(ByteSource& source, TextEncoding encoding, char delimiter) {
    begin_ = end_ = 0;
    isEnd_ = false;
    ends_ = CellEnds(delimiter);
    fault_ = RecordFault::none;
    line_ = 1;
    checksum_ = 0;
    if (buffer_.size() == 0 && buffer_.allocate(firstSize) != success) return outOfMemory;
    return decoder_.start(source, encoding);
}

std::string_view RecordReader::ahead() {
    // A piece that is not full is the last, which the next one tells.
    if (!isEnd_ && fill() && end_ < buffer_.size()) fill();
    return {buffer_.data() + begin_, static_cast<std::size_t>(end_ - begin_)};
}

bool RecordReader::next(ImportRecord& record) {
    if (fault_ != RecordFault::none) return false;
    for (;;) {
        record.line = line_;
        if (begin_ < end_) {
            const char* const first = buffer_.data() + begin_;
            // Where the text breaks off, its last record is not whole.
            const bool isLast = isEnd_ && decoder_.fault() == TextDecoder::Fault::none;
            const char* const behind = cutRecord(first, buffer_.data() + end_, isLast, ends_, record, fault_);
            if (behind != nullptr) {
                begin_ += behind - first;
                line_ += record.lines;
                return true;
            }
            if (fault_ != RecordFault::none) return false;
        }
        if (isEnd_) {
            takeFault();
            return false;
        }
        if (!fill()) return false;
    }
}

// More text behind what is there; false at a fault.
bool RecordReader::fill() {
    const Index kept = end_ - begin_;
    std::memmove(buffer_.data(), buffer_.data() + begin_, static_cast<std::size_t>(kept));
    begin_ = 0;
    end_ = kept;
    if (kept > buffer_.size() / 2) {
        if (kept >= longestRecord) {
            fault_ = RecordFault::tooLong;
            return false;
        }
        if (buffer_.grow(2 * buffer_.size()) != success) {
            fault_ = RecordFault::noMemory;
            return false;
        }
    }
    const Index added = decoder_.decode(buffer_.data() + end_, buffer_.size() - end_);
    checksum_ ^= hashOf({buffer_.data() + end_, static_cast<std::size_t>(added)});
    checksum_ = std::rotl(checksum_, 1);
    end_ += added;
    isEnd_ = added == 0;
    return true;
}

void RecordReader::takeFault() {
    switch (decoder_.fault()) {
    case TextDecoder::Fault::none:
        break;
    case TextDecoder::Fault::unreadable:
        fault_ = RecordFault::unreadable;
        break;
    case TextDecoder::Fault::notUtf8:
        fault_ = RecordFault::notUtf8;
        break;
    case TextDecoder::Fault::holdsNul:
        fault_ = RecordFault::holdsNul;
        break;
    case TextDecoder::Fault::workbook:
        fault_ = RecordFault::workbook;
        break;
    }
}
