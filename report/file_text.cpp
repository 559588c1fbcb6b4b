#include "report/file_text.h"

#include <algorithm>

namespace {

constexpr Index longestCharacter = 4;

} // namespace

char32_t takeFileCharacter(std::string_view& text) {
    if (validUtf8(text.data(), std::min(std::ssize(text), longestCharacter)) > 0) return takeCharacter(text);
    const unsigned char byte = static_cast<unsigned char>(text[0]);
    text.remove_prefix(1);
    return fromWindows1252(byte);
}

std::size_t wholeCharacters(std::string_view text, std::size_t most) {
    std::string_view rest = text;
    std::size_t kept = 0;
    while (!rest.empty()) {
        takeFileCharacter(rest);
        if (text.size() - rest.size() > most) break;
        kept = text.size() - rest.size();
    }
    return kept;
}

bool isControl(char32_t character) {
    return character < ' ' || (character >= 0x7F && character < 0xA0);
}

char32_t withoutControls(char32_t character) {
    if (character == '\t' || character == '\n' || character == '\r') return ' ';
    return isControl(character) ? replacementCharacter : character;
}

void appendCharacter(TextBuffer& document, char32_t character) {
    char bytes[longestCharacter];
    document.append({bytes, static_cast<std::size_t>(putCharacter(character, bytes))});
}
