#pragma once

#include "report/canvas.h"
#include "report/charts/chart.h"
#include "report/graph_layout.h"

// What the user sees of a chart.
struct ChartView {
    Extent size = {800, 600};
    int fontHeight = 16;
    bool labels = false;   // of the samples
    bool ellipses = false; // of their groups
};

// What a drawing left out for want of room.
struct ChartShortage {
    Index labels = 0; // that have no place
    Index ofLabels = 0;
};

// One axis in pixels: `from` is where its least value stands, `to` where its greatest does.
struct ChartScale {
    double least = 0.0;
    double most = 1.0;
    int from = 0;
    int to = 1;
    bool isLogarithmic = false;

    // The pixel of a value; of one beyond an end that end.
    int place(double value) const;
};

// The values that the axis has to hold, from the layers of a chart.
struct ChartRange {
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();

    void hold(double value);
};

// A scale without pixels: with air at the ends that are not held, of a positive length whatever the range.
ChartScale makeScale(const ChartAxis& axis, const ChartRange& range);

// Where an axis has its numbers, in order.
struct ChartTicks {
    static constexpr int most = 24;

    int count = 0;
    struct Tick {
        double value;
        char text[32];
    } ticks[most];
};

// At round numbers, so that there are no more than `room` of them.
void findTicks(const ChartScale& scale, int room, ChartTicks& ticks);

// Makes one unit as long on both axes, by showing more on one of them.
void equalize(ChartScale& across, ChartScale& up);
