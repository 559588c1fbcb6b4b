#pragma once

#include "app/program.h"
#include "report/print_pages.h"

// A screen's text as printed pages. Positions are characters of the text from 0.
class PageSource {
public:
    virtual ~PageSource() = default;

    virtual LONG end() = 0;
    // Lays out the page that begins at `start`; the position behind its last character, which is `start`
    // itself when nothing can be formatted.
    virtual LONG formatPage(LONG start) = 0;
    // Draws the page that was laid out last.
    virtual void drawPage() = 0;
};

// The rich-edit control's own formatting.
class RichEditPages : public PageSource {
public:
    RichEditPages(HWND screen, HDC printer, const PageArea& page, const PageArea& print);
    ~RichEditPages() override;
    RichEditPages(const RichEditPages&) = delete;
    RichEditPages& operator=(const RichEditPages&) = delete;

    LONG end() override;
    LONG formatPage(LONG start) override;
    void drawPage() override;

private:
    HWND screen_;
    HDC printer_;
    RECT page_;
    RECT print_;
};

// Plain lines in the screen's font, for systems whose control formats nothing for a printer.
class TextPages : public PageSource {
public:
    TextPages(HWND screen, HDC printer, const PrinterPage& page, const PageArea& print);
    ~TextPages() override;
    TextPages(const TextPages&) = delete;
    TextPages& operator=(const TextPages&) = delete;

    LONG end() override { return static_cast<LONG>(length_); }
    LONG formatPage(LONG start) override;
    void drawPage() override;

private:
    std::size_t fitting(const char* text, std::size_t count) const;
    std::size_t lineLengthAt(std::size_t start) const;
    std::size_t behindLine(std::size_t end) const;

    HDC printer_;
    HFONT font_ = nullptr;
    HGDIOBJ formerFont_ = nullptr;
    Block<char> text_;
    std::size_t length_ = 0;
    RECT area_; // device units from the printable corner
    int lineHeight_ = 1;
    LONG pageStart_ = 0;
    LONG pageEnd_ = 0;
};
