#include "report/graph_painter.h"

#include "report/graph_axes.h"
#include "report/graph_lines.h"
#include "report/graph_scatter.h"

void drawGraph(Canvas& canvas, const Graph& graph, const GraphView& view) {
    if (!graph.present) return;
    const GraphLayout layout = layOutGraph(graph, view);
    if (layout.plot.left >= layout.plot.right || layout.plot.top >= layout.plot.bottom) return;
    drawAxes(canvas, graph, layout);
    if (graph.spec.kind == GraphKind::bars) {
        drawBars(canvas, graph, view, layout);
    } else if (graph.spec.kind <= GraphKind::lineOnThreeAxes) {
        drawLines(canvas, graph, view, layout);
    } else {
        drawScatter(canvas, graph, view, layout);
    }
}
