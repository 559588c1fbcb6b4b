#pragma once

#include "report/graph_layout.h"

// The vectors of a scatter on its two axes, in red with their names: sized ones from the origin to their own
// end, also outside the plot, or lines through the origin that are cut at the plot. An open head is at the
// end that the vector points to. Vectors that are zero or not finite are left out.
void drawVectors(Canvas& canvas, const Graph& graph, const GraphLayout& layout);
