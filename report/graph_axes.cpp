#include "report/graph_axes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

constexpr Color zeroLineGrey = {0xB0, 0xB0, 0xB0};
constexpr int numberGap = 2;  // between a tick and its number
constexpr int numberAir = 6;  // between two numbers
constexpr int nameMargin = 2; // from the window's edge
constexpr int mostDecimals = 9;
constexpr double leastPlainStep = 1e-2;
constexpr double firstLongNumber = 1e5;

// Decimals of the shortest number that is the step, for a step between 0.01 and 99999.
int stepDecimals(double step) {
    for (int decimals = 0; decimals < mostDecimals; ++decimals) {
        if (std::abs(step - std::round(step)) < 1e-6 * step) return decimals;
        step *= 10;
    }
    return mostDecimals;
}

// Digits behind the first one of the largest number, down to the last that a step (1, 2, 2.5 or 5 times a
// power of ten) can change.
int digitsAfterFirst(double largest, double step) {
    return static_cast<int>(std::floor(std::log10(largest)) - std::floor(std::log10(step))) + 1;
}

// "2.50e+06" becomes "2.5e6", "1.0e-05" becomes "1e-5".
void shortenExponent(char* text) {
    char* to = std::strchr(text, 'e');
    if (to == nullptr) return;
    const char* from = to + 1;
    if (std::strchr(text, '.') != nullptr) {
        while (to[-1] == '0') --to;
        if (to[-1] == '.') --to;
    }
    *to++ = 'e';
    if (*from == '-') *to++ = '-';
    while (*from == '+' || *from == '-' || *from == '0') ++from;
    while (*from != '\0') *to++ = *from++;
    *to = '\0';
}

// Of the numbers that stand at every stride-th tick.
int widestNumber(Canvas& canvas, const Axis& axis, int stride, const TextStyle& style) {
    int widest = 0;
    const TickRange ticks = tickRange(axis);
    for (int k = ticks.first; k <= ticks.last; ++k) {
        char text[tickTextSize];
        if (k % stride != 0) continue;
        writeTickNumber(axis, k, text);
        widest = std::max(widest, canvas.measure(text, style).width);
    }
    return widest;
}

class AxisPainter {
public:
    AxisPainter(Canvas& canvas, const Graph& graph, const GraphLayout& layout)
        : canvas_(canvas), graph_(graph), layout_(layout),
          plot_(layout.plot), pen_{black, layout.penWidth}, style_{layout.fontHeight} {}

    void drawZeroLines() {
        const Pen pen = {zeroLineGrey, 1};
        const Point origin = layout_.origin;
        drawSegment(canvas_, {plot_.left, origin.y}, {plot_.right, origin.y}, pen);
        if (layout_.horizontal.series < 0) return;
        drawSegment(canvas_, {origin.x, plot_.top}, {origin.x, plot_.bottom}, pen);
    }

    void drawHorizontal() {
        const Axis& axis = layout_.horizontal;
        drawSegment(canvas_, {plot_.left, plot_.bottom}, {plot_.right, plot_.bottom}, pen_);
        if (axis.series < 0) return;
        const int stride = numberStride(axis, widestNumber(canvas_, axis, 1, style_) + numberAir);
        const int numberTop = plot_.bottom + layout_.tickLength + numberGap;
        const TickRange ticks = tickRange(axis);
        for (int k = ticks.first; k <= ticks.last; ++k) {
            const int x = layout_.origin.x + pixelOffset(k * axis.step, axis);
            drawSegment(canvas_, {x, plot_.bottom}, {x, plot_.bottom + layout_.tickLength}, pen_);
            if (k % stride != 0) continue;
            char text[tickTextSize];
            writeTickNumber(axis, k, text);
            const int width = canvas_.measure(text, style_).width;
            const int left = std::clamp(x - width / 2, 0, std::max(layout_.size.width - width, 0));
            canvas_.drawText({left, numberTop}, text, style_);
        }
        nameHorizontal(numberTop + style_.height);
    }

    void drawVertical(const Axis& axis, Color color, bool onRight) {
        if (axis.series < 0) return;
        const int edge = onRight ? plot_.right : plot_.left;
        const int outside = onRight ? 1 : -1;
        const Pen pen = {color, layout_.penWidth};
        drawSegment(canvas_, {edge, plot_.top}, {edge, plot_.bottom}, pen);

        // Numbers that have no room outside, even half as many of them, go to the other side of the axis.
        const int room =
            (onRight ? layout_.size.width - plot_.right : plot_.left) - layout_.tickLength - numberGap;
        int stride = numberStride(axis, style_.height + 1);
        const int widest = widestNumber(canvas_, axis, stride, style_);
        bool fits = widest < room;
        if (!fits && widestNumber(canvas_, axis, 2 * stride, style_) < room) {
            stride *= 2;
            fits = true;
        }
        const int numberEdge =
            fits ? edge + outside * (layout_.tickLength + numberGap) : edge - outside * 2 * numberGap;
        const bool endsThere = fits != onRight; // numbers end at numberEdge, else they begin there

        const TickRange ticks = tickRange(axis);
        for (int k = ticks.first; k <= ticks.last; ++k) {
            const int y = layout_.origin.y - pixelOffset(k * axis.step, axis);
            drawSegment(canvas_, {edge, y}, {edge + outside * layout_.tickLength, y}, pen);
            if (k % stride != 0) continue;
            char text[tickTextSize];
            writeTickNumber(axis, k, text);
            const int width = canvas_.measure(text, style_).width;
            const int lowest =
                fits ? layout_.size.height : plot_.bottom - style_.height; // off the other axis
            const int top = std::min(y - style_.height / 2, lowest);
            canvas_.drawText({endsThere ? numberEdge - width : numberEdge, top}, text, style_);
        }
        nameVertical(axis, color, onRight, fits ? 0 : widest + 4 * numberGap);
    }

private:
    // Under the numbers, or above the axis where the window ends.
    void nameHorizontal(int numberBottom) {
        char name[textSlotSize];
        fitText(canvas_, nameOf(layout_.horizontal), style_, plot_.right - plot_.left, name);
        const int x = plot_.right - canvas_.measure(name, style_).width;
        const bool fits = numberBottom + style_.height < layout_.size.height;
        canvas_.drawText({x, fits ? numberBottom + 1 : plot_.bottom - style_.height - nameMargin}, name,
                         style_);
    }

    // Above the plot, beside what numbers inside the plot reach up there.
    void nameVertical(const Axis& axis, Color color, bool onRight, int numbers) {
        const bool shared = layout_.secondVertical.series >= 0;
        const int width = (plot_.right - plot_.left) / (shared ? 2 : 1) - numbers - nameMargin;
        TextStyle style = style_;
        style.color = color;
        char name[textSlotSize];
        fitText(canvas_, nameOf(axis), style, width, name);
        const int x =
            onRight ? plot_.right - numbers - canvas_.measure(name, style).width : plot_.left + numbers;
        canvas_.drawText({x, plot_.top - style.height - 1}, name, style);
    }

    const char* nameOf(const Axis& axis) const { return graph_.spec.seriesNames[axis.series]; }

    Canvas& canvas_;
    const Graph& graph_;
    const GraphLayout& layout_;
    const Box plot_;
    const Pen pen_;
    const TextStyle style_;
};

} // namespace

void writeTickNumber(const Axis& axis, int k, char (&text)[tickTextSize]) {
    const double value = k * axis.step;
    const double largest = std::max(axis.top, -axis.bottom);
    const bool plain = axis.step >= leastPlainStep && largest < firstLongNumber;
    char* const last = text + sizeof text - 1;
    const std::to_chars_result result =
        plain ? std::to_chars(text, last, value, std::chars_format::fixed, stepDecimals(axis.step))
              : std::to_chars(text, last, value, std::chars_format::scientific,
                              digitsAfterFirst(largest, axis.step));
    *result.ptr = '\0';
    if (k == 0) std::snprintf(text, sizeof text, "0");
    shortenExponent(text);
}

int numberStride(const Axis& axis, int size) {
    const double spacing = axis.step * axis.scale;
    for (const int stride : {1, 2, 5, 10}) {
        if (stride * spacing >= size) return stride;
    }
    return 20; // more than an axis has: the zero alone
}

void fitText(Canvas& canvas, const char* text, const TextStyle& style, int width,
             char (&fitted)[textSlotSize]) {
    std::snprintf(fitted, sizeof fitted, "%s", text);
    std::size_t length = std::min(std::strlen(fitted), sizeof fitted - sizeof "..");
    while (length > 0 && canvas.measure(fitted, style).width > width) {
        --length;
        std::snprintf(fitted + length, sizeof fitted - length, "..");
    }
}

void drawAxes(Canvas& canvas, const Graph& graph, const GraphLayout& layout) {
    AxisPainter painter(canvas, graph, layout);
    const bool twoAxes = layout.secondVertical.series >= 0;
    const bool lines = graph.spec.kind >= GraphKind::line && graph.spec.kind <= GraphKind::lineOnThreeAxes;
    painter.drawZeroLines();
    painter.drawHorizontal();
    painter.drawVertical(layout.vertical, lines ? lineColors[0] : black, false);
    if (twoAxes) painter.drawVertical(layout.secondVertical, lineColors[1], true);
}
