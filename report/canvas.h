#pragma once

#include <cstdint>
#include <span>

// What a picture is painted on. Co-ordinates are pixels from the top left corner, y downwards.

struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const Color&) const = default;
};

struct Point {
    int x = 0;
    int y = 0;
    bool operator==(const Point&) const = default;
};

struct Extent {
    int width = 0;
    int height = 0;
};

// Right and bottom are not part of it.
struct Box {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

struct Pen {
    Color color;
    int width = 1;
    bool dashed = false;
    bool operator==(const Pen&) const = default;
};

// Arial; the height is that of a line of text, from the highest accent to the deepest descender.
struct TextStyle {
    int height = 12;
    Color color = {};
    bool italic = false;
    bool underlined = false;
    bool operator==(const TextStyle&) const = default;
};

class Canvas {
public:
    virtual ~Canvas() = default;

    // From point to point.
    virtual void drawLine(std::span<const Point> points, const Pen& pen) = 0;
    virtual void fillBox(const Box& box, Color color) = 0;
    virtual void fillPolygon(std::span<const Point> corners, Color color) = 0;
    virtual void fillCircle(Point centre, int radius, Color color) = 0;
    // Texts are single bytes of Windows-1252, without line ends.
    virtual void drawText(Point topLeft, const char* text, const TextStyle& style) = 0;
    // A quarter turn to the left: the text covers its height across and its width upwards.
    virtual void drawUpright(Point topLeft, const char* text, const TextStyle& style) = 0;
    virtual Extent measure(const char* text, const TextStyle& style) = 0;
};

inline void drawSegment(Canvas& canvas, Point from, Point to, const Pen& pen) {
    const Point points[] = {from, to};
    canvas.drawLine(points, pen);
}
