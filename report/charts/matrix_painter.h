#pragma once

#include "report/charts/chart_layout.h"

// Draws a scatter of each pair of columns, with their names on the diagonal.
void drawScatterMatrix(Canvas& canvas, const Chart& chart, const ChartView& view);
