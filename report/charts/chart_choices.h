#pragma once

#include "report/charts/chart_layout.h"

// What a user chooses of a drawing.
struct ChartChoices {
    static constexpr int leastSize = 200;
    static constexpr int mostSize = 10'000;
    static constexpr int leastFont = 8;
    static constexpr int mostFont = 100;

    Extent size = {0, 0}; // pixels; 0: as the chart needs it
    int fontHeight = 0;   // pixels; 0: by the size
    bool labels = false;
    bool ellipses = false;
};

ChartView viewOf(const Chart& chart, const ChartChoices& choices);
