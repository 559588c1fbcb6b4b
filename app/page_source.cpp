#include "app/page_source.h"

#include "app/screen_font.h"

namespace {

RECT rectangleOf(const PageArea& area) {
    return {area.left, area.top, area.right, area.bottom};
}

int toDevice(int twips, int perInch) {
    return MulDiv(twips, perInch, twipsPerInch);
}

HFONT printerFont(HWND screen, const PrinterPage& page) {
    CHARFORMATA format = {};
    format.cbSize = sizeof format;
    SendMessageA(screen, EM_GETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
    if (format.yHeight <= 0) format.yHeight = 200;
    const LOGFONTA font = logicalFont(format, page.verticalPerInch);
    return CreateFontIndirectA(&font);
}

// Tabs become blanks up to the next multiple of this many characters, half an inch of the start font.
constexpr std::size_t tabWidth = 6;

// The text with "\n" for every end of a line or page and blanks for tabs; `to` is null to count only.
std::size_t plainText(const char* from, char* to) {
    std::size_t length = 0, column = 0;
    const auto put = [&](char c) {
        if (to != nullptr) to[length] = c;
        ++length;
        column = c == '\n' ? 0 : column + 1;
    };
    for (; *from != '\0'; ++from) {
        if (*from == '\r' && from[1] == '\n') continue;
        const bool isEnd = *from == '\r' || *from == '\v' || *from == '\f';
        if (*from == '\t') {
            do {
                put(' ');
            } while (column % tabWidth != 0);
        } else {
            put(isEnd ? '\n' : *from);
        }
    }
    return length;
}

} // namespace

RichEditPages::RichEditPages(HWND screen, HDC printer, const PageArea& page, const PageArea& print)
    : screen_(screen), printer_(printer), page_(rectangleOf(page)), print_(rectangleOf(print)) {}

RichEditPages::~RichEditPages() {
    SendMessageA(screen_, EM_FORMATRANGE, FALSE, 0); // releases the control's cache
}

LONG RichEditPages::end() {
    GETTEXTLENGTHEX asked = {GTL_NUMCHARS | GTL_PRECISE, 1200}; // characters of UTF-16, as positions are
    return static_cast<LONG>(SendMessageA(screen_, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&asked), 0));
}

LONG RichEditPages::formatPage(LONG start) {
    FORMATRANGE range = {printer_, printer_, print_, page_, {start, -1}};
    return static_cast<LONG>(SendMessageA(screen_, EM_FORMATRANGE, FALSE, reinterpret_cast<LPARAM>(&range)));
}

void RichEditPages::drawPage() {
    RECT band = print_;
    SendMessageA(screen_, EM_DISPLAYBAND, 0, reinterpret_cast<LPARAM>(&band));
}

TextPages::TextPages(HWND screen, HDC printer, const PrinterPage& page, const PageArea& print)
    : printer_(printer) {
    Block<char> shown;
    const int shownLength = GetWindowTextLengthA(screen);
    if (shown.allocate(shownLength + 1) == success) {
        GetWindowTextA(screen, shown.data(), shownLength + 1);
        const std::size_t count = plainText(shown.data(), nullptr);
        if (text_.allocate(count) == success) length_ = plainText(shown.data(), text_.data());
    }
    font_ = printerFont(screen, page);
    if (font_ != nullptr) formerFont_ = SelectObject(printer, font_);
    area_ = {toDevice(print.left, page.horizontalPerInch) - page.leftEdge,
             toDevice(print.top, page.verticalPerInch) - page.topEdge,
             toDevice(print.right, page.horizontalPerInch) - page.leftEdge,
             toDevice(print.bottom, page.verticalPerInch) - page.topEdge};
    TEXTMETRICA metric = {};
    if (GetTextMetricsA(printer, &metric) != 0) lineHeight_ = metric.tmHeight + metric.tmExternalLeading;
    if (lineHeight_ < 1) lineHeight_ = 1;
}

TextPages::~TextPages() {
    if (formerFont_ != nullptr) SelectObject(printer_, formerFont_);
    if (font_ != nullptr) DeleteObject(font_);
}

std::size_t TextPages::fitting(const char* text, std::size_t count) const {
    int fits = 0;
    SIZE extent = {};
    if (GetTextExtentExPointA(printer_, text, static_cast<int>(count), area_.right - area_.left, &fits,
                              nullptr, &extent) == 0) {
        return count;
    }
    return static_cast<std::size_t>(fits);
}

std::size_t TextPages::lineLengthAt(std::size_t start) const {
    return lineLength(text_.data() + start, length_ - start,
                      [this](const char* text, std::size_t count) { return fitting(text, count); });
}

// Where the next line begins.
std::size_t TextPages::behindLine(std::size_t end) const {
    return end < length_ && text_[end] == '\n' ? end + 1 : end;
}

LONG TextPages::formatPage(LONG start) {
    pageStart_ = start;
    std::size_t at = static_cast<std::size_t>(start);
    for (int y = area_.top; y + lineHeight_ <= area_.bottom && at < length_; y += lineHeight_) {
        at = behindLine(at + lineLengthAt(at));
    }
    pageEnd_ = static_cast<LONG>(at);
    return pageEnd_;
}

void TextPages::drawPage() {
    std::size_t at = static_cast<std::size_t>(pageStart_);
    const std::size_t end = static_cast<std::size_t>(pageEnd_);
    if (font_ != nullptr) SelectObject(printer_, font_);
    for (int y = area_.top; at < end; y += lineHeight_) {
        const std::size_t count = lineLengthAt(at);
        TextOutA(printer_, area_.left, y, text_.data() + at, static_cast<int>(count));
        at = behindLine(at + count);
    }
}
