#include "report/charts/chart_painter.h"

#include <algorithm>

#include "report/charts/matrix_painter.h"
#include "report/charts/plane_painter.h"
#include "report/charts/tree_painter.h"

ErrorCode drawChart(Canvas& canvas, const Chart& chart, const ChartView& view, ChartShortage& shortage) {
    shortage = {};
    switch (chart.kind) {
    case ChartKind::plane:
        return drawPlane(canvas, chart, view, shortage);
    case ChartKind::tree:
        return drawTree(canvas, chart, view, shortage);
    case ChartKind::scatterMatrix:
        drawScatterMatrix(canvas, chart, view);
        return success;
    }
    return success;
}

Extent chartSize(const Chart& chart, int fontHeight) {
    constexpr Index mostHeight = 10'000;
    const Index line = fontHeight, width = 50 * line;
    Index height = 75 * line / 2; // four to three
    if (chart.kind == ChartKind::scatterMatrix) height = width * 9 / 10;
    if (chart.kind == ChartKind::tree)
        height = std::clamp((chart.tree.labels.size() + 6) * line, 20 * line, mostHeight);
    if (chart.up.categories.size() > 0)
        height = std::clamp((2 * chart.up.categories.size() + 6) * line, 15 * line, mostHeight);
    return {static_cast<int>(width), static_cast<int>(height)};
}
