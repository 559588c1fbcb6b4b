#pragma once

#include "report/charts/chart_layout.h"

// The part of a chart around its marks: title, axes with numbers, and the legend on the right.

constexpr Color chartInk = {0x20, 0x20, 0x20};
constexpr Color chartGrey = {0x70, 0x70, 0x70};     // of guides
constexpr Color chartGridGrey = {0xE4, 0xE4, 0xE4}; // of the lines at the numbers
constexpr Color chartShade = {0xD8, 0xE4, 0xEC};    // of a band

struct ChartFrame {
    Extent size;
    TextStyle text;
    TextStyle title;
    Box plot;
    int legendLeft = 0;
    ChartScale across, up;
    ChartTicks acrossTicks, upTicks;

    bool hasRoom() const { return plot.right - plot.left >= 20 && plot.bottom - plot.top >= 20; }
    int markRadius(Index marks) const; // where so many stand
    int lineWidth() const;
};

// Places all of it around the ranges; `left` is kept free on the left besides what the axis needs.
ChartFrame layOutFrame(Canvas& canvas, const Chart& chart, const ChartView& view, const ChartRange& across,
                       const ChartRange& up, int left = 0);

void drawTitle(Canvas& canvas, const Chart& chart, const ChartFrame& frame);
void drawAcrossAxis(Canvas& canvas, const ChartAxis& axis, const ChartFrame& frame);
void drawUpAxis(Canvas& canvas, const ChartAxis& axis, const ChartFrame& frame);
void drawLegend(Canvas& canvas, const Chart& chart, const ChartFrame& frame);

Pen layerPen(const ChartLayer& layer, const ChartFrame& frame);

// A text that is shortened to so many pixels, with its width; empty where these are too few for any of it.
struct FittedText {
    char text[textSlotSize];
    int width;
};
FittedText fitTo(Canvas& canvas, const char* text, const TextStyle& style, int width);
