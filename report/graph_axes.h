#pragma once

#include "report/graph_layout.h"

constexpr Color black = {};
constexpr Color vectorRed = {204, 0, 0};
constexpr Color highlightRed = {255, 0, 0};
constexpr Color numberBlue = {0x33, 0x33, 0xCC};

// A line plot draws the first line in the first colour, on the vertical axis, and the second one on the
// second vertical axis.
constexpr Color lineColors[2] = {{0x1F, 0x4E, 0xA8}, {0xB8, 0x5C, 0x00}};

constexpr Index tickTextSize = 32;

// The number at the k-th multiple of the step: with just the decimals that tell the ticks apart, such as
// "0.25"; beyond 99999 and for steps below 0.01 short with an exponent, such as "2.5e6".
void writeTickNumber(const Axis& axis, int k, char (&text)[tickTextSize]);

// How many ticks go on from one number to the next, so that numbers of this size have air between them.
int numberStride(const Axis& axis, int size);

// Shortens a text to this many pixels; what is cut off is told by "..".
void fitText(Canvas& canvas, const char* text, const TextStyle& style, int width,
             char (&fitted)[textSlotSize]);

// The axes at the edges of the plot with ticks, numbers and the names of their series, and thin lines through
// the origin.
void drawAxes(Canvas& canvas, const Graph& graph, const GraphLayout& layout);
