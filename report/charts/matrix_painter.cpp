#include "report/charts/matrix_painter.h"

#include <algorithm>
#include <cmath>

#include "report/charts/chart_frame.h"
#include "report/charts/group_style.h"
#include "report/charts/plane_painter.h"

namespace {

constexpr Index mostColumns = 64;
constexpr int gap = 6;    // between panels
constexpr int inside = 4; // between a panel's edge and its outermost marks

struct MatrixPainter {
    Canvas& canvas;
    const Chart& chart;
    const ChartFrame& frame;
    Index columns;

    // The panel of column j across and column i upwards.
    Box panel(Index i, Index j) const {
        const auto edge = [&](int from, int to, Index k) {
            return from + static_cast<int>((to - from) * k / columns);
        };
        const Box& plot = frame.plot;
        return {edge(plot.left, plot.right, j), edge(plot.top, plot.bottom, i),
                edge(plot.left, plot.right, j + 1) - gap, edge(plot.top, plot.bottom, i + 1) - gap};
    }

    ChartScale scale(Index column, int from, int to) const {
        ChartRange range;
        for (Index s = 0; s < chart.values.rows(); ++s) range.hold(chart.values(s, column));
        ChartScale made = makeScale({}, range);
        const int sign = to > from ? 1 : -1;
        made.from = from + sign * inside;
        made.to = to - sign * inside;
        return made;
    }

    void drawEdges(const Box& box) const {
        const Point points[] = {{box.left, box.top},
                                {box.right, box.top},
                                {box.right, box.bottom},
                                {box.left, box.bottom},
                                {box.left, box.top}};
        canvas.drawLine(points, {.color = chartGrey});
    }

    void drawName(Index column, const Box& box) const {
        const FittedText name = fitTo(canvas, chart.names[column], frame.text, box.right - box.left - gap);
        canvas.drawText(
            {(box.left + box.right - name.width) / 2, (box.top + box.bottom - frame.text.height) / 2},
            name.text, frame.text);
    }

    void drawMarks(Index i, Index j, const Box& box) const {
        const ChartScale across = scale(j, box.left, box.right), up = scale(i, box.bottom, box.top);
        const int room = std::min(box.right - box.left, box.bottom - box.top);
        const int radius = std::clamp(room / 50, 1, frame.markRadius(chart.values.rows()));
        for (Index s = 0; s < chart.values.rows(); ++s) {
            const double x = chart.values(s, j), y = chart.values(s, i);
            if (!std::isfinite(x) || !std::isfinite(y)) continue;
            drawMark(canvas, sampleStyle(chart.groups, s), {across.place(x), up.place(y)}, radius);
        }
    }

    // Numbers below the last row and beside the first column.
    void drawNumbers(Index column) const {
        ChartTicks ticks;
        const Box lowest = panel(columns - 1, column), leftmost = panel(column, 0);
        const TextStyle style = numberStyle();
        const ChartScale across = scale(column, lowest.left, lowest.right);
        findTicks(across, std::max((lowest.right - lowest.left) / (3 * style.height), 3), ticks);
        int right = 0; // of the number before
        for (int k = 0; k < ticks.count; ++k) {
            const int width = canvas.measure(ticks.ticks[k].text, style).width;
            const int left = across.place(ticks.ticks[k].value) - width / 2;
            if (left < right || left + width > lowest.right + gap) continue;
            canvas.drawText({left, lowest.bottom + 2}, ticks.ticks[k].text, style);
            right = left + width + style.height / 3;
        }
        const ChartScale up = scale(column, leftmost.bottom, leftmost.top);
        findTicks(up, std::max((leftmost.bottom - leftmost.top) / (2 * style.height), 3), ticks);
        for (int k = 0; k < ticks.count; ++k) {
            const int width = canvas.measure(ticks.ticks[k].text, style).width;
            const int top = up.place(ticks.ticks[k].value) - style.height / 2;
            canvas.drawText({leftmost.left - 3 - width, top}, ticks.ticks[k].text, style);
        }
    }

    TextStyle numberStyle() const {
        return {.height = std::max(frame.text.height * 3 / 4, 6), .color = chartInk};
    }
};

} // namespace

void drawScatterMatrix(Canvas& canvas, const Chart& chart, const ChartView& view) {
    const Index columns = std::min(chart.values.columns(), mostColumns);
    if (columns == 0) return;
    ChartFrame frame = layOutFrame(canvas, chart, view, {}, {});
    const int margin = view.fontHeight / 2;
    frame.plot.left = margin + 3 * view.fontHeight;
    frame.plot.bottom = view.size.height - margin - view.fontHeight + gap;
    frame.plot.right += gap;
    if (!frame.hasRoom()) return;
    const MatrixPainter painter = {canvas, chart, frame, columns};
    drawTitle(canvas, chart, frame);
    for (Index i = 0; i < columns; ++i) {
        for (Index j = 0; j < columns; ++j) {
            const Box box = painter.panel(i, j);
            if (box.right - box.left < 3 * inside || box.bottom - box.top < 3 * inside) continue;
            painter.drawEdges(box);
            if (i == j) {
                painter.drawName(i, box);
            } else {
                painter.drawMarks(i, j, box);
            }
        }
        painter.drawNumbers(i);
    }
    drawLegend(canvas, chart, frame);
}
