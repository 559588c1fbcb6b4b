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
    void fillPolygon(std::span<const Point> corners, Color color) override;
    void fillCircle(Point centre, int radius, Color color) override;
    void drawText(Point topLeft, const char* text, const TextStyle& style) override;
    void drawUpright(Point topLeft, const char* text, const TextStyle& style) override;
    Extent measure(const char* text, const TextStyle& style) override;

private:
    // Calls `fill` with a brush of the colour and without a pen.
    template <class Fill> void fillShape(Color color, Fill fill);
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

// Arial of this height of a line, turned to the left by tenths of a degree; null when the system has no more.
HFONT createArial(const TextStyle& style, int turn = 0);
