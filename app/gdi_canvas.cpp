#include "app/gdi_canvas.h"

#include <cstring>
#include <iterator>

#include "numeric/block.h"

namespace {

COLORREF colorOf(Color color) {
    return RGB(color.red, color.green, color.blue);
}

} // namespace

HFONT createArial(const TextStyle& style, int turn) {
    return CreateFontA(style.height, 0, turn, turn, FW_NORMAL, style.italic, style.underlined, FALSE,
                       DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                       VARIABLE_PITCH | FF_SWISS, "Arial");
}

GdiCanvas::GdiCanvas(HDC device)
    : device_(device), ownPen_(GetCurrentObject(device, OBJ_PEN)),
      ownFont_(GetCurrentObject(device, OBJ_FONT)) {
    SetBkMode(device_, TRANSPARENT);
    SetTextAlign(device_, TA_LEFT | TA_TOP);
}

GdiCanvas::~GdiCanvas() {
    SelectObject(device_, ownPen_);
    SelectObject(device_, ownFont_);
    if (pen_ != nullptr) DeleteObject(pen_);
    if (font_ != nullptr) DeleteObject(font_);
}

bool GdiCanvas::select(const Pen& pen) {
    if (pen_ != nullptr && pen == penMade_) return true;
    const HPEN made = CreatePen(pen.dashed ? PS_DASH : PS_SOLID, pen.width, colorOf(pen.color));
    if (made == nullptr) return false;
    SelectObject(device_, made);
    if (pen_ != nullptr) DeleteObject(pen_);
    pen_ = made;
    penMade_ = pen;
    return true;
}

bool GdiCanvas::select(const TextStyle& style) {
    SetTextColor(device_, colorOf(style.color));
    TextStyle shape = style;
    shape.color = {};
    if (font_ != nullptr && shape == fontMade_) return true;
    const HFONT made = createArial(shape);
    if (made == nullptr) return false;
    SelectObject(device_, made);
    if (font_ != nullptr) DeleteObject(font_);
    font_ = made;
    fontMade_ = shape;
    return true;
}

void GdiCanvas::drawLine(std::span<const Point> points, const Pen& pen) {
    if (points.empty() || !select(pen)) return;
    MoveToEx(device_, points[0].x, points[0].y, nullptr);
    for (const Point& point : points.subspan(1)) LineTo(device_, point.x, point.y);
}

void GdiCanvas::fillBox(const Box& box, Color color) {
    const HBRUSH brush = CreateSolidBrush(colorOf(color));
    if (brush == nullptr) return;
    const RECT area = {box.left, box.top, box.right, box.bottom};
    FillRect(device_, &area, brush);
    DeleteObject(brush);
}

template <class Fill> void GdiCanvas::fillShape(Color color, Fill fill) {
    const HBRUSH brush = CreateSolidBrush(colorOf(color));
    if (brush == nullptr) return;
    const HGDIOBJ brushBefore = SelectObject(device_, brush);
    const HGDIOBJ penBefore = SelectObject(device_, GetStockObject(NULL_PEN));
    fill();
    SelectObject(device_, penBefore);
    SelectObject(device_, brushBefore);
    DeleteObject(brush);
}

void GdiCanvas::fillPolygon(std::span<const Point> corners, Color color) {
    Block<POINT> points;
    if (points.allocate(std::ssize(corners)) != success) return;
    for (Index k = 0; k < points.size(); ++k) {
        const Point& corner = corners[static_cast<std::size_t>(k)];
        points[k] = {corner.x, corner.y};
    }
    fillShape(color, [&] { Polygon(device_, points.data(), static_cast<int>(points.size())); });
}

void GdiCanvas::fillCircle(Point centre, int radius, Color color) {
    fillShape(color, [&] {
        Ellipse(device_, centre.x - radius, centre.y - radius, centre.x + radius + 2, centre.y + radius + 2);
    });
}

void GdiCanvas::drawUpright(Point topLeft, const char* text, const TextStyle& style) {
    const int width = measure(text, style).width;
    const HFONT turned = createArial(style, 900);
    if (turned == nullptr) return;
    const HGDIOBJ before = SelectObject(device_, turned);
    SetTextColor(device_, colorOf(style.color));
    TextOutA(device_, topLeft.x, topLeft.y + width, text, static_cast<int>(std::strlen(text)));
    SelectObject(device_, before);
    DeleteObject(turned);
}

void GdiCanvas::drawText(Point topLeft, const char* text, const TextStyle& style) {
    if (select(style)) TextOutA(device_, topLeft.x, topLeft.y, text, static_cast<int>(std::strlen(text)));
}

Extent GdiCanvas::measure(const char* text, const TextStyle& style) {
    SIZE size = {};
    if (!select(style) || !GetTextExtentPoint32A(device_, text, static_cast<int>(std::strlen(text)), &size))
        return {};
    return {size.cx, style.height};
}
