#include "report/charts/tree_painter.h"

#include <algorithm>
#include <cmath>

#include "report/charts/chart_frame.h"
#include "report/charts/group_style.h"
#include "report/charts/tree_layout.h"

namespace {

constexpr int leastLabelHeight = 6;

// Rows share the height of the plot.
struct TreeRows {
    const ChartFrame& frame;
    Index count;

    double pitch() const {
        return static_cast<double>(frame.plot.bottom - frame.plot.top) / static_cast<double>(count);
    }
    int middle(double place) const {
        return frame.plot.top + static_cast<int>(std::floor((place + 0.5) * pitch()));
    }
};

// Labels shrink with their rows to a height that can be read.
TextStyle labelStyle(const ChartView& view, Index items) {
    const double rows = static_cast<double>(std::max<Index>(items, 1));
    const int pitch = static_cast<int>((view.size.height - 5 * view.fontHeight) / rows);
    return {.height = std::clamp(pitch, leastLabelHeight, view.fontHeight), .color = chartInk};
}

int widestLabel(Canvas& canvas, const TextView& labels, const TextStyle& style, int most) {
    int widest = 0;
    for (Index i = 0; i < labels.size(); ++i)
        widest = std::max(widest, canvas.measure(labels[i], style).width);
    return std::min(widest, most);
}

// Where rows are lower than a label, every k-th one has its label.
void drawLabels(Canvas& canvas, const ChartTree& tree, const TreeLayout& layout, const TreeRows& rows,
                const TextStyle& style, ChartShortage& shortage) {
    const int half = rows.frame.text.height / 2;
    const int right = rows.frame.plot.left - half / 2, room = right - half;
    const Index stride =
        std::max(static_cast<Index>(std::ceil(style.height / std::max(rows.pitch(), 1e-3) - 0.1)), Index{1});
    shortage.ofLabels = layout.items();
    for (Index row = 0; row < layout.items(); row += stride) {
        const FittedText label = fitTo(canvas, tree.labels[layout.order[row]], style, room);
        const int y = rows.middle(static_cast<double>(row)) - style.height / 2;
        canvas.drawText({right - label.width, y}, label.text, style);
    }
    shortage.labels = layout.items() - (layout.items() + stride - 1) / stride;
}

Pen penOf(Index cluster, const ChartFrame& frame) {
    if (cluster < 0) return {.color = chartGrey, .width = frame.lineWidth()};
    return {.color = groupStyle(static_cast<int>(cluster)).color, .width = frame.lineWidth()};
}

// From each part of a merge across to its level, and between the two.
void drawMerge(Canvas& canvas, const TreeLayout& layout, const TreeLayout::Node& merge,
               const TreeRows& rows) {
    const ChartFrame& frame = rows.frame;
    const auto partAt = [&](Index k) -> const TreeLayout::Node& { return layout.nodes[merge.parts[k]]; };
    const int x = frame.across.place(merge.level);
    if (partAt(0).cluster == merge.cluster && partAt(1).cluster == merge.cluster) {
        const Point points[] = {{frame.across.place(partAt(0).level), rows.middle(partAt(0).place)},
                                {x, rows.middle(partAt(0).place)},
                                {x, rows.middle(partAt(1).place)},
                                {frame.across.place(partAt(1).level), rows.middle(partAt(1).place)}};
        return canvas.drawLine(points, penOf(merge.cluster, frame));
    }
    for (const Index k : {0, 1}) {
        const TreeLayout::Node& part = partAt(k);
        const int y = rows.middle(part.place);
        drawSegment(canvas, {frame.across.place(part.level), y}, {x, y}, penOf(part.cluster, frame));
    }
    drawSegment(canvas, {x, rows.middle(partAt(0).place)}, {x, rows.middle(partAt(1).place)},
                penOf(merge.cluster, frame));
}

} // namespace

ErrorCode drawTree(Canvas& canvas, const Chart& chart, const ChartView& view, ChartShortage& shortage) {
    TreeLayout layout;
    const ErrorCode code = layOutTree(chart.tree, layout);
    if (code != success || layout.items() == 0) return code;
    ChartRange levels;
    levels.hold(0.0);
    for (const TreeLayout::Node& node : layout.nodes) levels.hold(node.level);
    const TextStyle style = labelStyle(view, layout.items());
    const int labels =
        widestLabel(canvas, chart.tree.labels, style, view.size.width / 3) + view.fontHeight / 2;
    const ChartFrame frame = layOutFrame(canvas, chart, view, levels, {}, labels);
    if (!frame.hasRoom()) return success;
    const TreeRows rows = {frame, layout.items()};
    drawTitle(canvas, chart, frame);
    drawAcrossAxis(canvas, chart.across, frame);
    if (layout.hasCutLevel) {
        const int x = frame.across.place(layout.cutLevel);
        drawSegment(canvas, {x, frame.plot.top}, {x, frame.plot.bottom},
                    {.color = chartInk, .width = 1, .dashed = true});
    }
    for (Index node = layout.items(); node < layout.nodes.size(); ++node) {
        const TreeLayout::Node& merge = layout.nodes[node];
        if (std::isfinite(merge.level)) drawMerge(canvas, layout, merge, rows);
    }
    drawLabels(canvas, chart.tree, layout, rows, style, shortage);
    return success;
}
