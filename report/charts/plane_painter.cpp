#include "report/charts/plane_painter.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "report/charts/chart_frame.h"
#include "report/charts/ellipse.h"
#include "report/charts/group_style.h"
#include "report/charts/label_placement.h"

namespace {

constexpr int ellipseSides = 72;

struct PlaneRanges {
    ChartRange across, up;
};

// What a painter of layers needs.
struct Plane {
    Canvas& canvas;
    const Chart& chart;
    const ChartFrame& frame;

    bool isFinite(double x, double y) const {
        return std::isfinite(x) && std::isfinite(y) && (!frame.across.isLogarithmic || x > 0.0);
    }
    Point place(double x, double y) const { return {frame.across.place(x), frame.up.place(y)}; }
};

bool findGroupEllipse(const Chart& chart, const ChartLayer& layer, Index group, Block<char>& isIn,
                      ChartEllipse& ellipse) {
    for (Index s = 0; s < layer.size(); ++s) isIn[s] = chart.groups.groupOf[s] == group;
    return findEllipse(layer.x.data(), layer.y.data(), isIn.data(), layer.size(), ellipse);
}

// Calls `visit` with each ellipse and its group.
template <class Visit> ErrorCode visitEllipses(const Chart& chart, const ChartView& view, Visit visit) {
    for (Index k = 0; view.ellipses && k < chart.layerCount; ++k) {
        const ChartLayer& layer = chart.layers[k];
        if (!layer.isOfSamples || chart.groups.groupOf.size() != layer.size()) continue;
        Block<char> isIn;
        if (isIn.allocate(layer.size()) != success) return outOfMemory;
        ChartEllipse ellipse;
        for (Index g = 0; g < chart.groups.count; ++g) {
            if (findGroupEllipse(chart, layer, g, isIn, ellipse)) visit(ellipse, static_cast<int>(g));
        }
    }
    return success;
}

ErrorCode findRanges(const Chart& chart, const ChartView& view, PlaneRanges& ranges) {
    const auto across = [&](double value) {
        if (!chart.across.isLogarithmic || value > 0.0) ranges.across.hold(value);
    };
    for (Index k = 0; k < chart.layerCount; ++k) {
        const ChartLayer& layer = chart.layers[k];
        const bool isAcross = layer.kind == LayerKind::intervals;
        for (const double x : layer.x) across(x);
        for (const double y : layer.y) ranges.up.hold(y);
        for (const Block<double>* limits : {&layer.lower, &layer.upper}) {
            for (const double limit : *limits) isAcross ? across(limit) : ranges.up.hold(limit);
        }
        if (layer.kind == LayerKind::arrows) {
            across(0.0);
            ranges.up.hold(0.0);
        }
    }
    return visitEllipses(chart, view, [&](const ChartEllipse& ellipse, int) {
        const double halfWidth = std::hypot(ellipse.longX, ellipse.shortX);
        const double halfHeight = std::hypot(ellipse.longY, ellipse.shortY);
        for (const double side : {-1.0, 1.0}) {
            across(ellipse.meanX + side * halfWidth);
            ranges.up.hold(ellipse.meanY + side * halfHeight);
        }
    });
}

// Lines are broken where a value is not finite. Steps go across before they go up or down.
ErrorCode drawPolyline(const Plane& plane, const ChartLayer& layer) {
    const bool isStepped = layer.kind == LayerKind::steps;
    Block<Point> points;
    if (points.allocate(2 * layer.size()) != success) return outOfMemory;
    const Pen pen = layerPen(layer, plane.frame);
    Index count = 0;
    const auto draw = [&] {
        if (count > 1) plane.canvas.drawLine(std::span(points.data(), static_cast<std::size_t>(count)), pen);
        count = 0;
    };
    for (Index i = 0; i < layer.size(); ++i) {
        if (!plane.isFinite(layer.x[i], layer.y[i])) {
            draw();
            continue;
        }
        const Point at = plane.place(layer.x[i], layer.y[i]);
        if (isStepped && count > 0) {
            points[count] = {at.x, points[count - 1].y};
            ++count;
        }
        points[count++] = at;
    }
    draw();
    return success;
}

ErrorCode drawBand(const Plane& plane, const ChartLayer& layer) {
    Block<Point> corners;
    if (corners.allocate(2 * layer.size()) != success) return outOfMemory;
    Index count = 0;
    const auto take = [&](double x, double y) {
        if (plane.isFinite(x, y)) corners[count++] = plane.place(x, y);
    };
    for (Index i = 0; i < layer.size(); ++i) take(layer.x[i], layer.upper[i]);
    for (Index i = layer.size(); i-- > 0;) take(layer.x[i], layer.lower[i]);
    if (count > 2)
        plane.canvas.fillPolygon(std::span(corners.data(), static_cast<std::size_t>(count)), chartShade);
    return success;
}

void drawIntervals(const Plane& plane, const ChartLayer& layer) {
    const Box& plot = plane.frame.plot;
    const Pen pen = layerPen(layer, plane.frame);
    const int radius = plane.frame.markRadius(1);
    for (Index i = 0; i < layer.size(); ++i) {
        if (!plane.isFinite(layer.x[i], layer.y[i])) continue;
        const Point at = plane.place(layer.x[i], layer.y[i]);
        // A limit beyond all numbers ends at the edge.
        const auto end = [&](double value, int edge) {
            return plane.isFinite(value, 0.0) ? plane.place(value, 0.0).x : edge;
        };
        const int from = end(layer.lower[i], plot.left), to = end(layer.upper[i], plot.right);
        drawSegment(plane.canvas, {from, at.y}, {to, at.y}, pen);
        for (const int x : {from, to}) drawSegment(plane.canvas, {x, at.y - radius}, {x, at.y + radius}, pen);
        drawMark(plane.canvas, groupStyle(layer.style), at, radius + 1);
    }
}

void drawArrows(const Plane& plane, const ChartLayer& layer) {
    const Pen pen = {.color = chartInk, .width = std::max(plane.frame.text.height / 12, 1)};
    const Point origin = plane.place(0.0, 0.0);
    const double head = plane.frame.text.height / 2.0, sine = 0.35, cosine = 0.94;
    for (Index i = 0; i < layer.size(); ++i) {
        if (!plane.isFinite(layer.x[i], layer.y[i])) continue;
        const Point tip = plane.place(layer.x[i], layer.y[i]);
        const double dx = origin.x - tip.x, dy = origin.y - tip.y, length = std::hypot(dx, dy);
        if (length < 1.0) continue;
        drawSegment(plane.canvas, origin, tip, pen);
        const double ux = dx / length * std::min(head, length), uy = dy / length * std::min(head, length);
        const auto barb = [&](double side) {
            return Point{tip.x + static_cast<int>(std::lround(cosine * ux - side * sine * uy)),
                         tip.y + static_cast<int>(std::lround(cosine * uy + side * sine * ux))};
        };
        const Point points[] = {barb(1.0), tip, barb(-1.0)};
        plane.canvas.drawLine(points, pen);
    }
}

void drawPoints(const Plane& plane, const ChartLayer& layer) {
    const int radius = plane.frame.markRadius(layer.size());
    for (Index i = 0; i < layer.size(); ++i) {
        if (!plane.isFinite(layer.x[i], layer.y[i])) continue;
        const GroupStyle style =
            layer.isOfSamples ? sampleStyle(plane.chart.groups, i) : groupStyle(plane.chart.styleOf(layer));
        drawMark(plane.canvas, style, plane.place(layer.x[i], layer.y[i]), radius);
    }
}

ErrorCode drawLayer(const Plane& plane, const ChartLayer& layer) {
    switch (layer.kind) {
    case LayerKind::points:
        drawPoints(plane, layer);
        return success;
    case LayerKind::arrows:
        drawArrows(plane, layer);
        return success;
    case LayerKind::line:
    case LayerKind::steps:
        return drawPolyline(plane, layer);
    case LayerKind::band:
        return drawBand(plane, layer);
    case LayerKind::intervals:
        drawIntervals(plane, layer);
        return success;
    }
    return success;
}

bool isLabelled(const ChartLayer& layer, const ChartView& view) {
    return layer.labels.size() > 0 && (!layer.isOfSamples || view.labels);
}

// No label stands on the line of an arrow.
void takeShaft(Point origin, Point tip, LabelPlacement& placement) {
    const int length = std::max(std::abs(tip.x - origin.x), std::abs(tip.y - origin.y));
    for (int k = 0; k < length; ++k) {
        const int x = origin.x + (tip.x - origin.x) * k / length;
        const int y = origin.y + (tip.y - origin.y) * k / length;
        placement.take({x, y, x + 1, y + 1});
    }
}

void takeMarks(const Plane& plane, const ChartLayer& layer, LabelPlacement& placement) {
    if (layer.kind != LayerKind::points && layer.kind != LayerKind::arrows) return;
    const int radius = plane.frame.markRadius(layer.size());
    for (Index i = 0; i < layer.size(); ++i) {
        if (!plane.isFinite(layer.x[i], layer.y[i])) continue;
        const Point at = plane.place(layer.x[i], layer.y[i]);
        placement.take({at.x - radius, at.y - radius, at.x + radius + 1, at.y + radius + 1});
        if (layer.kind == LayerKind::arrows) takeShaft(plane.place(0.0, 0.0), at, placement);
    }
}

void placeLabels(const Plane& plane, const ChartLayer& layer, LabelPlacement& placement,
                 ChartShortage& shortage) {
    const ChartFrame& frame = plane.frame;
    TextStyle style = frame.text;
    style.height = std::max(style.height * 7 / 8, 6);
    const int radius = frame.markRadius(layer.size());
    for (Index i = 0; i < layer.size(); ++i) {
        if (layer.labels[i][0] == '\0' || !plane.isFinite(layer.x[i], layer.y[i])) continue;
        const FittedText label = fitTo(plane.canvas, layer.labels[i], style, frame.size.width / 4);
        ++shortage.ofLabels;
        Point at;
        if (placement.place(plane.place(layer.x[i], layer.y[i]), radius, {label.width, style.height}, at)) {
            style.color = layer.isOfSamples ? chartInk : groupStyle(plane.chart.styleOf(layer)).color;
            if (layer.kind == LayerKind::arrows) style.color = chartInk;
            plane.canvas.drawText(at, label.text, style);
        } else {
            ++shortage.labels;
        }
    }
}

// The names of few things, as variables and categories, come before those of samples.
ErrorCode drawLabels(const Plane& plane, const ChartView& view, ChartShortage& shortage) {
    const auto layers = std::span(plane.chart.layers, static_cast<std::size_t>(plane.chart.layerCount));
    if (std::none_of(layers.begin(), layers.end(),
                     [&](const ChartLayer& layer) { return isLabelled(layer, view); })) {
        return success;
    }
    LabelPlacement placement;
    const ErrorCode code = placement.allocate(plane.frame.plot, std::max(view.fontHeight / 8, 1));
    if (code != success) return code;
    for (const ChartLayer& layer : layers) takeMarks(plane, layer, placement);
    for (const bool ofSamples : {false, true}) {
        for (const ChartLayer& layer : layers) {
            if (layer.isOfSamples == ofSamples && isLabelled(layer, view))
                placeLabels(plane, layer, placement, shortage);
        }
    }
    return success;
}

ErrorCode drawEllipses(const Plane& plane, const ChartView& view) {
    return visitEllipses(plane.chart, view, [&](const ChartEllipse& ellipse, int group) {
        Point points[ellipseSides + 1];
        for (int k = 0; k <= ellipseSides; ++k) {
            double x = 0.0, y = 0.0;
            ellipse.point(2.0 * std::numbers::pi * k / ellipseSides, x, y);
            points[k] = plane.place(x, y);
        }
        plane.canvas.drawLine(points, {.color = groupStyle(group).color, .width = plane.frame.lineWidth()});
    });
}

} // namespace

GroupStyle sampleStyle(const SampleGroups& groups, Index sample) {
    if (groups.count == 0) return groupStyle(0);
    const std::int32_t group = sample < groups.groupOf.size() ? groups.groupOf[sample] : -1;
    return group >= 0 ? groupStyle(group) : GroupStyle{chartGrey, MarkShape::plus};
}

ErrorCode drawPlane(Canvas& canvas, const Chart& chart, const ChartView& view, ChartShortage& shortage) {
    PlaneRanges ranges;
    ErrorCode code = findRanges(chart, view, ranges);
    if (code != success) return code;
    const ChartFrame frame = layOutFrame(canvas, chart, view, ranges.across, ranges.up);
    if (!frame.hasRoom()) return success;
    const Plane plane = {canvas, chart, frame};
    drawTitle(canvas, chart, frame);
    drawAcrossAxis(canvas, chart.across, frame);
    drawUpAxis(canvas, chart.up, frame);
    for (Index k = 0; k < chart.layerCount && code == success; ++k) code = drawLayer(plane, chart.layers[k]);
    if (code == success) code = drawEllipses(plane, view);
    if (code == success) code = drawLabels(plane, view, shortage);
    drawLegend(canvas, chart, frame);
    return code;
}
