#pragma once

#include "report/graph_layout.h"

// The vectors of a scatter on its two axes, in red with their names: sized ones from the origin to their end,
// or lines through the origin across the plot with an open head at the end that the vector points to. What
// reaches out of the plot is cut. Vectors that are zero or not finite are left out.
void drawVectors(Canvas& canvas, const Graph& graph, const GraphLayout& layout);
