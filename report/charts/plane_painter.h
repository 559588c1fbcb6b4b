#pragma once

#include "report/charts/chart_layout.h"
#include "report/charts/group_style.h"

// Draws a chart of layers on two axes.
[[nodiscard]] ErrorCode drawPlane(Canvas& canvas, const Chart& chart, const ChartView& view,
                                  ChartShortage& shortage);

// The style of a sample by its group: the first one where there are no groups, grey of a sample in none.
GroupStyle sampleStyle(const SampleGroups& groups, Index sample);
