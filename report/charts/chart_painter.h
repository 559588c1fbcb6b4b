#pragma once

#include "report/charts/chart_layout.h"

// Draws a described chart on a canvas that is white, all of it inside the size. Marks whose values are not
// finite are left out. Returns success or outOfMemory.
[[nodiscard]] ErrorCode drawChart(Canvas& canvas, const Chart& chart, const ChartView& view,
                                  ChartShortage& shortage);

// The size of a chart when nobody has chosen one: a tree is as high as its labels need.
Extent chartSize(const Chart& chart, int fontHeight);
