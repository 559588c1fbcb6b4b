#pragma once

#include <windows.h>

#include "report/canvas.h"

// Draws on a device context, whose own pen and font it puts back at its end.
class GdiCanvas : public Canvas {
public:
    explicit GdiCanvas(HDC device);
    ~GdiCanvas() override;
    GdiCanvas(const GdiCanvas&) = delete;
    GdiCanvas& operator=(const GdiCanvas&) = delete;

    void drawLine(std::span<const Point> points, const Pen& pen) override;
    void fillBox(const Box& box, Color color) override;
    void drawText(Point topLeft, const char* text, const TextStyle& style) override;
    Extent measure(const char* text, const TextStyle& style) override;

private:
    bool select(const Pen& pen);
    bool select(const TextStyle& style);

    HDC device_;
    HGDIOBJ ownPen_;
    HGDIOBJ ownFont_;
    // In use: most calls ask for the one before again.
    HPEN pen_ = nullptr;
    Pen penMade_;
    HFONT font_ = nullptr;
    TextStyle fontMade_;
};

// Arial of this height of a line; null when the system has no more.
HFONT createArial(const TextStyle& style);
