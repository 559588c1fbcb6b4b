#pragma once

#include "analysis/run/picture.h"
#include "report/charts/chart_choices.h"

// What was chosen of a picture of the last analysis.
struct PictureChoice {
    static constexpr int ofWindow =
        PictureWish::most; // behind the charts of the kind: that of the graph window

    int picture = 0;
    std::int32_t column = 0; // of the file, that tells the samples apart; 0: none, or groups of the analysis
    ChartChoices chart;
};
