#pragma once

#include "report/graph_layout.h"

// Kind 0: a bar for each item from the zero line, 70 % of its slot wide, with labels under the axis in two
// rows that take turns; where they would overlap, every k-th label only. The highlighted bar is red.
void drawBars(Canvas& canvas, const Graph& graph, const GraphView& view, const GraphLayout& layout);

// Kinds 1 to 3: a line that joins the items in order for each vertical axis, over the series of the
// horizontal axis. It is broken at items that are not finite. The highlighted item is marked in red.
void drawLines(Canvas& canvas, const Graph& graph, const GraphView& view, const GraphLayout& layout);
