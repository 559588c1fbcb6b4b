#include "report/charts/group_style.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr GroupStyle styles[] = {
    {{0x00, 0x72, 0xB2}, MarkShape::circle},           // blue
    {{0xE6, 0x9F, 0x00}, MarkShape::square},           // orange
    {{0x00, 0x9E, 0x73}, MarkShape::triangle},         // bluish green
    {{0x00, 0x00, 0x00}, MarkShape::diamond},          // black
    {{0xD5, 0x5E, 0x00}, MarkShape::invertedTriangle}, // vermillion
    {{0x56, 0xB4, 0xE9}, MarkShape::cross},            // sky blue
    {{0xCC, 0x79, 0xA7}, MarkShape::plus},             // reddish purple
    {{0x6E, 0x4B, 0x1E}, MarkShape::ring},             // brown
    {{0x80, 0x80, 0x80}, MarkShape::openSquare},       // grey
    {{0xC8, 0xB4, 0x00}, MarkShape::openTriangle},     // dark yellow
};

constexpr int circlePoints = 12;

void stroke(Canvas& canvas, std::span<const Point> points, Color color, int radius) {
    canvas.drawLine(points, {.color = color, .width = std::max(radius / 3, 1)});
}

void drawRing(Canvas& canvas, Point at, int r, Color color) {
    constexpr double cosines[] = {1.0, 0.866, 0.5, 0.0, -0.5, -0.866, -1.0, -0.866, -0.5, 0.0, 0.5, 0.866};
    Point points[circlePoints + 1];
    for (int k = 0; k <= circlePoints; ++k) {
        const double across = r * cosines[k % circlePoints], up = r * cosines[(k + 9) % circlePoints];
        points[k] = {at.x + static_cast<int>(across + (across < 0 ? -0.5 : 0.5)),
                     at.y + static_cast<int>(up + (up < 0 ? -0.5 : 0.5))};
    }
    stroke(canvas, points, color, r);
}

} // namespace

GroupStyle groupStyle(int number) {
    return styles[static_cast<std::size_t>(std::max(number, 0)) % std::size(styles)];
}

void drawMark(Canvas& canvas, const GroupStyle& style, Point at, int r) {
    const Color color = style.color;
    const int x = at.x, y = at.y, s = (7 * r + 4) / 8,
              d = r > 2 ? r + 1 : r; // of a square and a diamond that look as large as the circle
    const Point triangle[] = {{x, y - r}, {x + r, y + s}, {x - r, y + s}, {x, y - r}};
    const Point square[] = {{x - s, y - s}, {x + s, y - s}, {x + s, y + s}, {x - s, y + s}, {x - s, y - s}};
    switch (style.shape) {
    case MarkShape::circle:
        return canvas.fillCircle(at, r, color);
    case MarkShape::square:
        return canvas.fillPolygon(std::span(square).first(4), color);
    case MarkShape::triangle:
        return canvas.fillPolygon(std::span(triangle).first(3), color);
    case MarkShape::diamond: {
        const Point corners[] = {{x, y - d}, {x + d, y}, {x, y + d}, {x - d, y}};
        return canvas.fillPolygon(corners, color);
    }
    case MarkShape::invertedTriangle: {
        const Point corners[] = {{x, y + r}, {x + r, y - s}, {x - r, y - s}};
        return canvas.fillPolygon(corners, color);
    }
    case MarkShape::cross: {
        const Point points[] = {{x - s, y - s}, {x + s, y + s}, at, {x - s, y + s}, {x + s, y - s}};
        return stroke(canvas, points, color, r + 2);
    }
    case MarkShape::plus: {
        const Point points[] = {{x - r, y}, {x + r, y}, at, {x, y - r}, {x, y + r}};
        return stroke(canvas, points, color, r + 2);
    }
    case MarkShape::ring:
        return drawRing(canvas, at, r, color);
    case MarkShape::openSquare:
        return stroke(canvas, square, color, r);
    case MarkShape::openTriangle:
        return stroke(canvas, triangle, color, r);
    }
}
