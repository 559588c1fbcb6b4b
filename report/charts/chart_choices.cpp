#include "report/charts/chart_choices.h"

#include <algorithm>

#include "report/charts/chart_painter.h"

ChartView viewOf(const Chart& chart, const ChartChoices& choices) {
    ChartView view;
    view.labels = choices.labels;
    view.ellipses = choices.ellipses;
    const bool isSized = choices.size.width > 0;
    if (isSized) {
        view.size = choices.size;
        // Small pictures have smaller letters; large ones have room for more.
        const int fitting = std::min(view.size.width / 50, view.size.height / 37);
        view.fontHeight = std::clamp(fitting, ChartChoices::leastFont, view.fontHeight);
    }
    if (choices.fontHeight > 0) view.fontHeight = choices.fontHeight;
    if (!isSized) view.size = chartSize(chart, view.fontHeight);
    return view;
}
