#pragma once

#include "data/byte_source.h"
#include "data/import/import_options.h"

// The text of a file in UTF-8, in pieces.
class TextDecoder {
public:
    enum class Fault { none, unreadable, notUtf8, holdsNul, workbook };

    // Goes to the beginning of the source and reads past a byte-order mark, which says what `found` is;
    // without one that is UTF-16 where one of the first two bytes is NUL, else UTF-8. Success; outOfMemory;
    // illegalData when the source cannot be read.
    [[nodiscard]] ErrorCode start(ByteSource& source, TextEncoding encoding);

    // Writes up to `room` bytes, at least 16, of whole characters; 0 at the end and at a fault.
    Index decode(char* text, Index room);

    Fault fault() const { return fault_; }
    TextEncoding encoding() const { return encoding_; }

private:
    Index readRaw(char* bytes, Index count);
    Index decodeUtf8(char* text, Index room);
    Index decodeWindows(char* text, Index room);
    Index decodeUtf16(char* text, Index room);

    ByteSource* source_ = nullptr;
    TextEncoding encoding_ = TextEncoding::utf8;
    Fault fault_ = Fault::none;
    bool bigEndian_ = false;
    char16_t high_ = 0; // the first half of a pair whose second has not come
    char kept_[4] = {}; // bytes that were read and not used
    Index keptCount_ = 0;
    Block<char> raw_;
};
