#pragma once

#include "report/canvas.h"
#include "report/charts/chart.h"

// How groups are told apart: by colours that are told apart without red or green too, of different greys, and
// by a shape each (Okabe and Ito 2008, with two more).

enum class MarkShape {
    circle,
    square,
    triangle,
    diamond,
    invertedTriangle,
    cross,
    plus,
    ring,
    openSquare,
    openTriangle,
};

struct GroupStyle {
    Color color;
    MarkShape shape;
};

// Of a group or layer from 0; behind the last they begin again.
GroupStyle groupStyle(int number);

// A mark that is about 2 * radius wide and high.
void drawMark(Canvas& canvas, const GroupStyle& style, Point at, int radius);
