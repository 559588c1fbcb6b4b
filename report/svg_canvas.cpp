#include "report/svg_canvas.h"

#include <cmath>

#include "data/import/unicode.h"
#include "report/file_text.h"

namespace {

// Arial in thousandths of its size: a line from the highest accent to the deepest descender, the part above
// the base line, and the advances of the characters from ' ' to '~'.
constexpr double lineHeight = 1117.0;
constexpr double ascent = 905.0;
constexpr int otherAdvance = 600;
constexpr int advances[] = {278,  278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,
                            556,  556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,
                            1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,
                            667,  778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,
                            333,  556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,
                            556,  556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584};
constexpr int firstAdvance = ' ';
static_assert(sizeof advances / sizeof advances[0] == '~' - firstAdvance + 1);

// XML has no control characters, and some bytes of Windows-1252 are no others.
int characterOf(unsigned char byte) {
    const char32_t character = fromWindows1252(byte);
    return static_cast<int>(isControl(character) ? replacementCharacter : character);
}

void appendEscaped(TextBuffer& document, const char* text) {
    for (; *text != '\0'; ++text) {
        const int character = characterOf(static_cast<unsigned char>(*text));
        if (character > '~' || character == '&' || character == '<' || character == '>' || character == '"') {
            document.appendFormat("&#%d;", character);
        } else {
            document.append({text, 1});
        }
    }
}

void appendColor(TextBuffer& document, const char* attribute, Color color) {
    document.appendFormat(" %s=\"#%02x%02x%02x\"", attribute, color.red, color.green, color.blue);
}

double fontSize(const TextStyle& style) {
    return style.height * 1000.0 / lineHeight;
}

} // namespace

// Whole co-ordinates are the middles of pixels, as they are on a screen.
SvgCanvas::SvgCanvas(TextBuffer& document, Extent size) : document_(document) {
    document_.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    document_.appendFormat(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"-0.5 -0.5 %d %d\"\n"
        "     font-family=\"Arial, 'Liberation Sans', Helvetica, sans-serif\" fill=\"none\">\n",
        size.width, size.height, size.width, size.height);
    document_.appendFormat("<rect x=\"-0.5\" y=\"-0.5\" width=\"%d\" height=\"%d\" fill=\"#ffffff\"/>\n",
                           size.width, size.height);
}

void SvgCanvas::finish() {
    document_.append("</svg>\n");
}

void SvgCanvas::appendPoints(std::span<const Point> points) {
    const char* separator = "";
    for (const Point& point : points) {
        document_.appendFormat("%s%d,%d", separator, point.x, point.y);
        separator = " ";
    }
    document_.append("\"");
}

void SvgCanvas::drawLine(std::span<const Point> points, const Pen& pen) {
    document_.append("<polyline points=\"");
    appendPoints(points);
    appendColor(document_, "stroke", pen.color);
    document_.appendFormat(" stroke-width=\"%d\"", pen.width);
    if (pen.dashed) document_.appendFormat(" stroke-dasharray=\"%d %d\"", 6 * pen.width, 4 * pen.width);
    document_.append("/>\n");
}

void SvgCanvas::fillBox(const Box& box, Color color) {
    document_.append("<rect x=\"");
    document_.appendNumber(box.left - 0.5, 0, 1);
    document_.append("\" y=\"");
    document_.appendNumber(box.top - 0.5, 0, 1);
    document_.appendFormat("\" width=\"%d\" height=\"%d\"", box.right - box.left, box.bottom - box.top);
    appendColor(document_, "fill", color);
    document_.append("/>\n");
}

void SvgCanvas::fillPolygon(std::span<const Point> corners, Color color) {
    document_.append("<polygon points=\"");
    appendPoints(corners);
    appendColor(document_, "fill", color);
    document_.append("/>\n");
}

void SvgCanvas::fillCircle(Point centre, int radius, Color color) {
    document_.appendFormat("<circle cx=\"%d\" cy=\"%d\" r=\"%d\"", centre.x, centre.y, radius);
    appendColor(document_, "fill", color);
    document_.append("/>\n");
}

void SvgCanvas::drawText(Point topLeft, const char* text, const TextStyle& style) {
    document_.appendFormat("<text x=\"%d\" y=\"", topLeft.x);
    document_.appendNumber(topLeft.y + fontSize(style) * ascent / 1000, 0, 2);
    appendText(text, style);
}

void SvgCanvas::drawUpright(Point topLeft, const char* text, const TextStyle& style) {
    document_.append("<text transform=\"translate(");
    document_.appendNumber(topLeft.x + fontSize(style) * ascent / 1000, 0, 2);
    document_.appendFormat(" %d) rotate(-90)", topLeft.y + measure(text, style).width);
    appendText(text, style);
}

void SvgCanvas::appendText(const char* text, const TextStyle& style) {
    document_.append("\" font-size=\"");
    document_.appendNumber(fontSize(style), 0, 2);
    document_.append("\"");
    appendColor(document_, "fill", style.color);
    if (style.italic) document_.append(" font-style=\"italic\"");
    if (style.underlined) document_.append(" text-decoration=\"underline\"");
    document_.append(" xml:space=\"preserve\">");
    appendEscaped(document_, text);
    document_.append("</text>\n");
}

Extent SvgCanvas::measure(const char* text, const TextStyle& style) {
    int width = 0;
    for (; *text != '\0'; ++text) {
        const int character = static_cast<unsigned char>(*text);
        width +=
            character >= firstAdvance && character <= '~' ? advances[character - firstAdvance] : otherAdvance;
    }
    return {static_cast<int>(std::lround(width * fontSize(style) / 1000)), style.height};
}
