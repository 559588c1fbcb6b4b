#include "data/import/text_decoder.h"

#include <algorithm>
#include <cstring>

#include "data/import/unicode.h"

namespace {

constexpr Index rawSize = 1 << 16;

} // namespace

ErrorCode TextDecoder::start(ByteSource& source, TextEncoding encoding) {
    source_ = &source;
    fault_ = Fault::none;
    high_ = 0;
    keptCount_ = 0;
    if (raw_.size() == 0 && raw_.allocate(rawSize) != success) return outOfMemory;
    if (!source.rewind()) return illegalData;
    char bytes[3] = {};
    const Index length = source.read(bytes, 3);
    if (length < 0) return illegalData;
    const std::string_view head(bytes, static_cast<std::size_t>(length));
    const bool isUtf8 = head == byteOrderMark;
    const bool isLittle = head.starts_with("\xFF\xFE");
    const bool isBig = head.starts_with("\xFE\xFF");
    // The first character of a table is most often of ASCII.
    const bool isBareLittle = length >= 2 && bytes[0] != '\0' && bytes[1] == '\0';
    const bool isBareBig = length >= 2 && bytes[0] == '\0' && bytes[1] != '\0';
    const bool isWide = isLittle || isBig || isBareLittle || isBareBig;
    if (head == "PK\3" || head == "\xD0\xCF\x11") {
        fault_ = Fault::workbook; // what these files, zip archives or older ones, begin with
    }
    encoding_ = encoding;
    if (encoding == TextEncoding::found) encoding_ = isWide ? TextEncoding::utf16 : TextEncoding::utf8;
    bigEndian_ = isBig || isBareBig;
    const bool isUtf16 = encoding_ == TextEncoding::utf16;
    const Index markLength = isUtf16 && (isLittle || isBig) ? 2 : !isUtf16 && isUtf8 ? 3 : 0;
    keptCount_ = length - markLength;
    std::memcpy(kept_, bytes + markLength, static_cast<std::size_t>(keptCount_));
    return success;
}

Index TextDecoder::decode(char* text, Index room) {
    if (fault_ != Fault::none) return 0;
    if (encoding_ == TextEncoding::utf16) return decodeUtf16(text, room);
    return encoding_ == TextEncoding::windows1252 ? decodeWindows(text, room) : decodeUtf8(text, room);
}

// The bytes that were kept, then those of the source.
Index TextDecoder::readRaw(char* bytes, Index count) {
    const Index kept = keptCount_;
    std::memcpy(bytes, kept_, static_cast<std::size_t>(kept));
    keptCount_ = 0;
    const Index length = source_->read(bytes + kept, count - kept);
    if (length < 0) fault_ = Fault::unreadable;
    return length < 0 ? 0 : kept + length;
}

Index TextDecoder::decodeUtf8(char* text, Index room) {
    const Index length = readRaw(text, room);
    const Index valid = validUtf8(text, length);
    const Index rest = length - valid;
    if (rest == 0) return valid;
    // A character that is cut by the end of the piece goes on in the next one.
    if (length == room && rest < 4 && isUtf8Beginning(text + valid, rest)) {
        keptCount_ = rest;
        std::memcpy(kept_, text + valid, static_cast<std::size_t>(rest));
    } else {
        fault_ = text[valid] == '\0' ? Fault::holdsNul : Fault::notUtf8;
    }
    return valid;
}

Index TextDecoder::decodeWindows(char* text, Index room) {
    const Index length = readRaw(raw_.data(), std::min(rawSize, room / 3));
    Index written = 0;
    for (Index k = 0; k < length; ++k) {
        const auto byte = static_cast<unsigned char>(raw_[k]);
        if (byte == 0) {
            fault_ = Fault::holdsNul;
            break;
        }
        if (byte < 0x80) {
            text[written++] = raw_[k];
        } else {
            written += putCharacter(fromWindows1252(byte), text + written);
        }
    }
    return written;
}

// A half of a pair without the other becomes the replacement character.
Index TextDecoder::decodeUtf16(char* text, Index room) {
    const Index length = readRaw(raw_.data(), std::min(rawSize, room / 3));
    Index written = 0, at = 0;
    for (; at + 1 < length; at += 2) {
        const auto first = static_cast<unsigned char>(raw_[at]);
        const auto second = static_cast<unsigned char>(raw_[at + 1]);
        const auto unit = static_cast<char16_t>(bigEndian_ ? first << 8 | second : second << 8 | first);
        if (unit == 0) {
            fault_ = Fault::holdsNul;
            return written;
        }
        const bool isHigh = unit >= 0xD800 && unit < 0xDC00, isLow = unit >= 0xDC00 && unit < 0xE000;
        if (isLow && high_ != 0) {
            const char32_t pair = 0x10000 + ((high_ - 0xD800U) << 10) + (unit - 0xDC00U);
            written += putCharacter(pair, text + written);
            high_ = 0;
            continue;
        }
        if (high_ != 0) written += putCharacter(replacementCharacter, text + written);
        high_ = isHigh ? unit : char16_t{0};
        if (!isHigh) written += putCharacter(isLow ? replacementCharacter : unit, text + written);
    }
    if (at < length && length == std::min(rawSize, room / 3)) {
        keptCount_ = length - at;
        std::memcpy(kept_, raw_.data() + at, static_cast<std::size_t>(keptCount_));
    }
    return written;
}
