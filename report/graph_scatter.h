#pragma once

#include "report/graph_layout.h"

// The pixel of an item on a horizontal and a vertical axis; false when its values are not finite.
bool placeItem(const Graph& graph, const GraphLayout& layout, const Axis& vertical, Index item, Point& at);

// A diamond of this half-width around a point.
void drawMarker(Canvas& canvas, Point at, int halfWidth, const Pen& pen);

// Kinds 4 to 8: a marker for each item, with its number when numbering is on; the vectors of kinds 5, 7 and
// 8; the highlighted item in red.
void drawScatter(Canvas& canvas, const Graph& graph, const GraphView& view, const GraphLayout& layout);
