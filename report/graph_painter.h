#pragma once

#include "report/graph_layout.h"

// Paints the picture of a graph in the size of the view, on a canvas that is white. Nothing is drawn when
// there is no graph, or no room for one.
void drawGraph(Canvas& canvas, const Graph& graph, const GraphView& view);
