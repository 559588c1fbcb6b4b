#pragma once

#include "report/graph_layout.h"

// Cuts a segment to a box, its edges included; false when they do not meet.
bool clipSegment(const Box& box, double (&from)[2], double (&to)[2]);

// The vectors of a scatter on its two axes, in red with their names: sized ones from the origin to their end,
// or lines through the origin across the plot with an open head at the end that the vector points to. What
// reaches out of the plot is cut. Vectors that are zero or not finite are left out.
void drawVectors(Canvas& canvas, const Graph& graph, const GraphLayout& layout);
