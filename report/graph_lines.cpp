#include "report/graph_lines.h"

#include <algorithm>
#include <cmath>

#include "report/graph_axes.h"
#include "report/graph_scatter.h"

namespace {

constexpr Color barGreen = {0x3C, 0x82, 0x6E};
constexpr double barShare = 0.7; // of a slot
constexpr int labelGap = 4;

double slotWidth(const Graph& graph, const GraphLayout& layout) {
    return (layout.plot.right - layout.plot.left) / static_cast<double>(graph.spec.itemCount);
}

double slotCentre(const GraphLayout& layout, double slot, Index item) {
    return layout.plot.left + (static_cast<double>(item) + 0.5) * slot;
}

void drawBar(Canvas& canvas, const GraphLayout& layout, double centre, double slot, double value,
             Color color) {
    const int width = std::max(1, static_cast<int>(slot * barShare));
    const int left = static_cast<int>(centre - width / 2.0);
    const int end = layout.origin.y - pixelOffset(value, layout.vertical);
    canvas.fillBox({left, std::min(end, layout.origin.y), left + width, std::max(end, layout.origin.y)},
                   color);
}

void drawLabels(Canvas& canvas, const Graph& graph, const GraphLayout& layout, double slot) {
    const TextStyle style = {layout.fontHeight};
    const int top = layout.plot.bottom + style.height / 2 + 1; // below the lowest number of the axis
    const int room = layout.size.height - top;
    const int rows = room >= 2 * style.height ? 2 : 1;
    const int mostWidth = 2 * layout.plot.left; // the first and the last one then stay inside the window
    int widest = 1;
    char text[textSlotSize];
    for (Index i = 0; i < graph.spec.itemCount; ++i) {
        fitText(canvas, graph.spec.itemLabels[i], style, mostWidth, text);
        widest = std::max(widest, canvas.measure(text, style).width);
    }
    const double needed = (widest + labelGap) / (rows * slot);
    const Index stride = static_cast<Index>(std::ceil(std::max(needed, 1.0)));
    int row = 0;
    for (Index i = 0; i < graph.spec.itemCount; i += stride) {
        fitText(canvas, graph.spec.itemLabels[i], style, mostWidth, text);
        const int x = static_cast<int>(slotCentre(layout, slot, i)) - canvas.measure(text, style).width / 2;
        canvas.drawText({x, top + row * style.height}, text, style);
        row = (row + 1) % rows;
    }
}

void drawItemLine(Canvas& canvas, const Graph& graph, const GraphView& view, const GraphLayout& layout,
                  const Axis& vertical, Color color) {
    const Pen pen = {color, layout.penWidth};
    Point before, at;
    bool joined = false;
    for (Index i = 0; i < graph.spec.itemCount; ++i) {
        const bool placed = placeItem(graph, layout, vertical, i, at);
        if (placed && joined) drawSegment(canvas, before, at, pen);
        if (placed) before = at;
        joined = placed;
    }
    if (view.highlighted == 0 || view.highlighted > graph.spec.itemCount) return;
    if (!placeItem(graph, layout, vertical, view.highlighted - 1, at)) return;
    drawMarker(canvas, at, layout.penWidth, {highlightRed, 2 * layout.penWidth});
}

} // namespace

void drawBars(Canvas& canvas, const Graph& graph, const GraphView& view, const GraphLayout& layout) {
    if (graph.spec.itemCount == 0) return;
    const double slot = slotWidth(graph, layout);
    for (Index i = 0; i < graph.spec.itemCount; ++i) {
        const double value = graph.spec.values[i];
        if (!std::isfinite(value)) continue;
        const Color color = i + 1 == view.highlighted ? highlightRed : barGreen;
        drawBar(canvas, layout, slotCentre(layout, slot, i), slot, value, color);
    }
    drawSegment(canvas, {layout.plot.left, layout.origin.y}, {layout.plot.right, layout.origin.y},
                {black, 1});
    drawLabels(canvas, graph, layout, slot);
}

void drawLines(Canvas& canvas, const Graph& graph, const GraphView& view, const GraphLayout& layout) {
    drawItemLine(canvas, graph, view, layout, layout.vertical, lineColors[0]);
    if (layout.secondVertical.series < 0) return;
    drawItemLine(canvas, graph, view, layout, layout.secondVertical, lineColors[1]);
}
