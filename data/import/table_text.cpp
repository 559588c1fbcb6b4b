#include "data/import/table_text.h"

#include <charconv>
#include <cstring>

#include "data/import/unicode.h"

namespace {

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x2028 ||
           character == 0x2029;
}

// Writes one character in the encoding of the target, at most 8 bytes; the count.
Index encode(char32_t character, const TextTarget& target, char* bytes, bool& lacks) {
    if (target.written == WrittenText::utf8 || character < 0x80) return putCharacter(character, bytes);
    if (target.codePage == nullptr) {
        if (toWindows1252(character, bytes[0])) return 1;
    } else {
        char utf8[5] = {};
        putCharacter(character, utf8);
        char converted[8] = {};
        if (target.codePage(utf8, converted, sizeof converted)) {
            const std::size_t length = strnlen(converted, sizeof converted);
            std::memcpy(bytes, converted, length);
            return static_cast<Index>(length);
        }
    }
    lacks = true;
    bytes[0] = '?';
    return 1;
}

Index digitsOf(Index number, char* digits) {
    return std::to_chars(digits, digits + 20, number).ptr - digits;
}

} // namespace

void cleanText(std::string_view utf8, const TextTarget& target, Index limit, TableText& cell) {
    cell.length = 0;
    cell.isCut = cell.lacks = false;
    bool joined = true; // a blank at this place would be one too many
    while (!utf8.empty()) {
        const char32_t character = takeCharacter(utf8);
        if (character == '"') continue;
        const bool isGap = character == ',' || isControl(character);
        if (isGap && cell.length > 0 && cell.text[cell.length - 1] == ' ') joined = true;
        if ((isGap || character == ' ') && joined) continue;
        char bytes[8];
        const Index length = encode(isGap ? U' ' : character, target, bytes, cell.lacks);
        if (cell.length + length > limit) {
            cell.isCut = true;
            break;
        }
        std::memcpy(cell.text + cell.length, bytes, static_cast<std::size_t>(length));
        cell.length += length;
        joined = isGap;
    }
    while (cell.length > 0 && cell.text[cell.length - 1] == ' ') --cell.length;
    cell.text[cell.length] = '\0';
}

void cleanLabel(std::string_view utf8, const TextTarget& target, Index sample, TableText& cell) {
    for (;;) {
        const std::size_t size = utf8.size();
        while (!utf8.empty() && std::strchr(" \t\r\n\",;", utf8[0]) != nullptr) utf8.remove_prefix(1);
        if (utf8.starts_with("//")) utf8.remove_prefix(2);
        if (utf8.size() == size) break;
    }
    const auto clean = [&](Index limit) {
        cleanText(utf8, target, limit, cell);
        // What a control or a quote stood between can begin like a comment all the same.
        while (cell.length > 0 &&
               (cell.text[0] == ';' || cell.text[0] == ' ' || cell.view().starts_with("//"))) {
            --cell.length;
            std::memmove(cell.text, cell.text + 1, static_cast<std::size_t>(cell.length) + 1);
        }
    };
    clean(textSlotLength);
    if (cell.length > 0 && !cell.isCut) return;
    char number[24] = "~";
    const Index length = 1 + digitsOf(sample, number + 1);
    const bool isCut = cell.isCut;
    if (cell.length == 0) {
        cell.length = length - 1;
        std::memcpy(cell.text, number + 1, static_cast<std::size_t>(cell.length));
    } else {
        const bool lacks = cell.lacks;
        clean(textSlotLength - length);
        std::memcpy(cell.text + cell.length, number, static_cast<std::size_t>(length));
        cell.length += length;
        cell.lacks = lacks;
    }
    cell.isCut = isCut;
    cell.text[cell.length] = '\0';
}

Index quoteText(std::string_view utf8, const TextTarget& target, char* bytes) {
    Index length = 0;
    bool lacks = false;
    bytes[length++] = '"';
    while (!utf8.empty()) {
        const char32_t character = takeCharacter(utf8);
        if (character == '"') bytes[length++] = '"';
        length += encode(isControl(character) ? U' ' : character, target, bytes + length, lacks);
    }
    bytes[length++] = '"';
    return length;
}
