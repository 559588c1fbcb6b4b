#pragma once

#include "report/charts/chart_layout.h"

// Draws a chart that is a tree: items on the left, levels across, the clusters of its cut in colours.
[[nodiscard]] ErrorCode drawTree(Canvas& canvas, const Chart& chart, const ChartView& view,
                                 ChartShortage& shortage);
