#include "report/graph_scatter.h"

#include <cmath>

#include "report/graph_axes.h"
#include "report/graph_vectors.h"

namespace {

bool drawsVectors(GraphKind kind) {
    return kind == GraphKind::plainBiplot || kind >= GraphKind::biplot;
}

bool hasNumber(const Graph& graph, Index item) {
    return graph.spec.numbering != 0 && item < graph.spec.numberLabels.size();
}

void drawItem(Canvas& canvas, const Graph& graph, const GraphLayout& layout, Index item, const Pen& pen,
              const TextStyle& style) {
    Point at;
    if (!placeItem(graph, layout, layout.vertical, item, at)) return;
    const int s = layout.penWidth;
    drawMarker(canvas, at, s, pen);
    if (hasNumber(graph, item))
        canvas.drawText({at.x + 2 * s, at.y + 2 * s}, graph.spec.numberLabels[item], style);
}

} // namespace

bool placeItem(const Graph& graph, const GraphLayout& layout, const Axis& vertical, Index item, Point& at) {
    if (layout.horizontal.series < 0 || vertical.series < 0) return false;
    const double* values = graph.spec.values.data() + item * graph.spec.seriesCount;
    const double across = values[layout.horizontal.series];
    const double up = values[vertical.series];
    if (!std::isfinite(across) || !std::isfinite(up)) return false;
    at = {layout.origin.x + pixelOffset(across, layout.horizontal),
          layout.origin.y - pixelOffset(up, vertical)};
    return true;
}

void drawMarker(Canvas& canvas, Point at, int halfWidth, const Pen& pen) {
    const auto [x, y] = at;
    const Point diamond[] = {
        {x, y - halfWidth}, {x - halfWidth, y}, {x, y + halfWidth}, {x + halfWidth, y}, {x, y - halfWidth}};
    canvas.drawLine(diamond, pen);
}

void drawScatter(Canvas& canvas, const Graph& graph, const GraphView& view, const GraphLayout& layout) {
    const int s = layout.penWidth;
    for (Index i = 0; i < graph.spec.itemCount; ++i) {
        if (i + 1 == view.highlighted) continue;
        drawItem(canvas, graph, layout, i, {black, s}, {layout.fontHeight, numberBlue});
    }
    if (drawsVectors(graph.spec.kind)) drawVectors(canvas, graph, layout);
    // Last, so that nothing hides it.
    if (view.highlighted == 0 || view.highlighted > graph.spec.itemCount) return;
    drawItem(canvas, graph, layout, view.highlighted - 1, {highlightRed, 2 * s},
             {layout.fontHeight, highlightRed, true, true});
}
