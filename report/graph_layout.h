#pragma once

#include "report/canvas.h"
#include "report/graph_spec.h"

// What the user sees of a graph: its size in pixels and what was chosen in the window.
struct GraphView {
    int width = 480;
    int height = 480;
    int series[3] = {0, 1, 2};     // on the horizontal, the vertical and the second vertical axis
    std::uint32_t highlighted = 0; // index of the item + 1, 0 for none
};

// One axis; bottom and top are multiples of the step.
struct Axis {
    int series = -1; // -1: not drawn
    double step = 0.0;
    double bottom = 0.0;
    double top = 0.0;
    double scale = 0.0; // pixels per unit
};

struct GraphLayout {
    Extent size;
    Box plot; // inside the margins and below the band
    int tickLength = 0;
    int penWidth = 0;
    int fontHeight = 0;
    Axis horizontal; // not drawn for bars, which have their items there
    Axis vertical;
    Axis secondVertical;
    Point origin; // the pixel of 0, 0
};

// Whether the user chooses the series on two axes.
bool choosesAxes(GraphKind kind);

// The distance of ticks for a range above 0 of any size: between a tenth and a fifth of it.
double tickStep(double range);

// Step, bottom and top for a series between minimum <= 0 and maximum >= 0. An axis without a range, or with
// one that has no scale in a double, goes from 0 to 1.
void setAxisRange(Axis& axis, double minimum, double maximum);

// Multiples of the step from the bottom to the top.
struct TickRange {
    int first;
    int last;
};
TickRange tickRange(const Axis& axis);

// Pixels from the origin, truncated toward zero; far values end somewhere outside of any picture.
int pixelOffset(double value, const Axis& axis);

// Where everything goes in a picture of the view's size.
GraphLayout layOutGraph(const Graph& graph, const GraphView& view);
