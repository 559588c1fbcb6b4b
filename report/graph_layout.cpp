#include "report/graph_layout.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace {

constexpr int bandHeight = 20;
constexpr double leastRange = 1e-300; // below it pixels per unit pass the largest double
constexpr int mostMultiples = 100;    // a range has ten steps at most
constexpr double farPixel = 100'000.0;
constexpr double zeroLineTolerance = 0.05;

bool hasBand(GraphKind kind) {
    return kind == GraphKind::lineOnThreeAxes || kind >= GraphKind::plainBiplot;
}

void choosePens(GraphLayout& layout) {
    const int side = std::min(layout.size.width, layout.size.height);
    const int level = side < 480 ? 0 : side < 960 ? 1 : 2;
    layout.tickLength = side * 2 / 100;
    layout.penWidth = 1 + level;
    layout.fontHeight = 12 + 2 * level;
}

// The first multiple of the step, counting from 0, that is not below the limit.
int countSteps(double limit, double step) {
    int count = 0;
    while (count < mostMultiples && count * step < limit) ++count;
    return count;
}

// An end of an axis is a multiple, or less than one where that has no double.
int wholeSteps(double end, double step) {
    const int count = countSteps(end, step);
    return count * step > end ? count - 1 : count;
}

// Halves keep the difference of the largest doubles finite.
double halfSpan(const Axis& axis) {
    return axis.top / 2 - axis.bottom / 2;
}

double pixelsPerUnit(const Axis& axis, int pixels) {
    return std::max(pixels, 0) / halfSpan(axis) / 2;
}

Axis makeAxis(const Graph& graph, int series) {
    Axis axis;
    if (series < 0 || series >= graph.spec.seriesCount) return axis;
    axis.series = series;
    setAxisRange(axis, graph.minimum[series], graph.maximum[series]);
    return axis;
}

void chooseAxes(const Graph& graph, const GraphView& view, GraphLayout& layout) {
    const GraphKind kind = graph.spec.kind;
    if (kind == GraphKind::bars) {
        layout.vertical = makeAxis(graph, 0);
        return;
    }
    layout.horizontal = makeAxis(graph, view.series[0]);
    layout.vertical = makeAxis(graph, view.series[1]);
    if (kind < GraphKind::plainBiplot) layout.secondVertical = makeAxis(graph, view.series[2]);
}

// The share of an axis that is above its zero line.
double shareAbove(const Axis& axis) {
    return axis.top / 2 / halfSpan(axis);
}

// Pixels from the zero line down to the bottom.
double depth(const Axis& axis) {
    return std::abs(axis.bottom) * axis.scale;
}

void setScales(GraphLayout& layout) {
    Axis& first = layout.vertical;
    Axis& second = layout.secondVertical;
    const int height = layout.plot.bottom - layout.plot.top;
    double across = 0.0;
    if (layout.horizontal.series >= 0) {
        layout.horizontal.scale = pixelsPerUnit(layout.horizontal, layout.plot.right - layout.plot.left);
        across = depth(layout.horizontal);
    }
    first.scale = first.series >= 0 ? pixelsPerUnit(first, height) : 0.0;
    double below = depth(first);
    if (second.series >= 0) {
        second.scale = pixelsPerUnit(second, height);
        // Both zero lines become one: together the axes need the larger share above it and the larger below.
        const double apart = shareAbove(first) - shareAbove(second);
        if (std::abs(apart) > zeroLineTolerance) {
            first.scale /= 1 + std::abs(apart);
            second.scale /= 1 + std::abs(apart);
            below = std::max(depth(first), depth(second));
        }
    }
    layout.origin.x = static_cast<int>(across + layout.plot.left);
    layout.origin.y = static_cast<int>(layout.plot.bottom - below);
}

} // namespace

bool choosesAxes(GraphKind kind) {
    return kind >= GraphKind::plainScatter;
}

double tickStep(double range) {
    double step = std::pow(10.0, std::trunc(std::log10(range)));
    while (step > range * 0.5) step *= 0.1;
    while (step > range * 0.2) step /= 2;
    while (step < range * 0.1) step *= 2;
    return step;
}

void setAxisRange(Axis& axis, double minimum, double maximum) {
    const double range = std::min(maximum - minimum, DBL_MAX);
    if (!(range >= leastRange)) {
        axis.step = tickStep(1.0);
        axis.bottom = 0.0;
        axis.top = 1.0;
        return;
    }
    axis.step = tickStep(range);
    axis.top = std::min(countSteps(maximum, axis.step) * axis.step, DBL_MAX);
    axis.bottom = std::max(-countSteps(-minimum, axis.step) * axis.step, -DBL_MAX);
}

TickRange tickRange(const Axis& axis) {
    return {-wholeSteps(-axis.bottom, axis.step), wholeSteps(axis.top, axis.step)};
}

int pixelOffset(double value, const Axis& axis) {
    return static_cast<int>(std::clamp(value * axis.scale, -farPixel, farPixel));
}

GraphLayout layOutGraph(const Graph& graph, const GraphView& view) {
    GraphLayout layout;
    const int width = std::max(view.width, 0);
    const int height = std::max(view.height, 0);
    layout.size = {width, height};
    const int marginX = width * 10 / 100;
    const int marginY = height * 10 / 100;
    const int band = hasBand(graph.spec.kind) ? bandHeight : 0;
    layout.plot = {marginX, marginY + band, width - marginX, height - marginY};
    choosePens(layout);
    chooseAxes(graph, view, layout);
    setScales(layout);
    return layout;
}
