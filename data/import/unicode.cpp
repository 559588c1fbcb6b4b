#include "data/import/unicode.h"

#include "data/eight_bytes.h"

namespace {

// Of the bytes 0x80 to 0x9F; those that are not assigned are controls.
constexpr char16_t windowsCharacters[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                            0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct Sequence {
    Index length;
    unsigned char least, most; // of the second byte, which rules out overlong forms and surrogates
};

Sequence sequenceOf(unsigned char first) {
    if (first >= 0xC2 && first <= 0xDF) return {2, 0x80, 0xBF};
    if (first == 0xE0) return {3, 0xA0, 0xBF};
    if (first == 0xED) return {3, 0x80, 0x9F};
    if (first >= 0xE1 && first <= 0xEF) return {3, 0x80, 0xBF};
    if (first == 0xF0) return {4, 0x90, 0xBF};
    if (first >= 0xF1 && first <= 0xF3) return {4, 0x80, 0xBF};
    if (first == 0xF4) return {4, 0x80, 0x8F};
    return {0, 0, 0};
}

// How many bytes of the sequence are there and right.
Index rightBytes(const Sequence& sequence, const char* text, Index length) {
    Index right = 1;
    for (; right < sequence.length && right < length; ++right) {
        const auto byte = static_cast<unsigned char>(text[right]);
        const unsigned char least = right == 1 ? sequence.least : 0x80,
                            most = right == 1 ? sequence.most : 0xBF;
        if (byte < least || byte > most) break;
    }
    return right;
}

// Whether all 8 bytes are ASCII without a NUL.
bool isPlain(const char* text) {
    const std::uint64_t bytes = eightBytes(text);
    constexpr std::uint64_t high = everyByte('\x80');
    return (bytes & high) == 0 && ((bytes - everyByte('\x01')) & high) == 0;
}

} // namespace

Index validUtf8(const char* text, Index length) {
    Index at = 0;
    for (;;) {
        while (at + 8 <= length && isPlain(text + at)) at += 8;
        if (at >= length || text[at] == '\0') return at;
        const auto first = static_cast<unsigned char>(text[at]);
        if (first < 0x80) {
            ++at;
            continue;
        }
        const Sequence sequence = sequenceOf(first);
        if (sequence.length == 0 || rightBytes(sequence, text + at, length - at) < sequence.length) return at;
        at += sequence.length;
    }
}

std::string_view firstCharacters(std::string_view text, std::size_t most) {
    if (text.size() <= most) return text;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) --most;
    return text.substr(0, most);
}

bool isUtf8Beginning(const char* text, Index length) {
    const Sequence sequence = sequenceOf(static_cast<unsigned char>(text[0]));
    return length < sequence.length && rightBytes(sequence, text, length) == length;
}

char32_t takeCharacter(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const Index length = first < 0x80 ? 1 : sequenceOf(first).length;
    if (length == 0 || static_cast<std::size_t>(length) > text.size()) {
        text.remove_prefix(1);
        return replacementCharacter;
    }
    char32_t character = length == 1 ? first : first & (0xFFU >> (length + 1));
    for (Index k = 1; k < length; ++k) {
        character = character << 6 | (static_cast<unsigned char>(text[static_cast<std::size_t>(k)]) & 0x3F);
    }
    text.remove_prefix(static_cast<std::size_t>(length));
    return character;
}

Index putCharacter(char32_t character, char* bytes) {
    if (character < 0x80) {
        bytes[0] = static_cast<char>(character);
        return 1;
    }
    const Index length = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
    for (Index k = length - 1; k > 0; --k) {
        bytes[k] = static_cast<char>(0x80 | (character & 0x3F));
        character >>= 6;
    }
    bytes[0] = static_cast<char>((0xF00U >> length & 0xF0U) | character);
    return length;
}

char32_t fromWindows1252(unsigned char byte) {
    return byte >= 0x80 && byte <= 0x9F ? windowsCharacters[byte - 0x80] : byte;
}

bool toWindows1252(char32_t character, char& byte) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
        byte = static_cast<char>(character);
        return true;
    }
    for (int k = 0; k < 32; ++k) {
        if (windowsCharacters[k] != character || character <= 0x9F) continue;
        byte = static_cast<char>(0x80 + k);
        return true;
    }
    return false;
}
