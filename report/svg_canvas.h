#pragma once

#include "report/canvas.h"
#include "report/text_buffer.h"

// Writes a picture as an SVG document into a growing buffer, which tells whether memory ran out.
class SvgCanvas : public Canvas {
public:
    // Begins a white picture of this size.
    SvgCanvas(TextBuffer& document, Extent size);
    // Ends the document; nothing is drawn after it.
    void finish();

    void drawLine(std::span<const Point> points, const Pen& pen) override;
    void fillBox(const Box& box, Color color) override;
    void fillPolygon(std::span<const Point> corners, Color color) override;
    void fillCircle(Point centre, int radius, Color color) override;
    void drawText(Point topLeft, const char* text, const TextStyle& style) override;
    void drawUpright(Point topLeft, const char* text, const TextStyle& style) override;
    // From the widths of Arial, which the viewer's font may differ from by little.
    Extent measure(const char* text, const TextStyle& style) override;

private:
    void appendPoints(std::span<const Point> points);
    // What follows the place of a text.
    void appendText(const char* text, const TextStyle& style);

    TextBuffer& document_;
};
