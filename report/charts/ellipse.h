#pragma once

#include "numeric/block.h"

// The ellipse that holds 0.95 of a normal distribution of the points' means and covariances.
struct ChartEllipse {
    double meanX = 0.0;
    double meanY = 0.0;
    // From the mean to the ends of the long and of the short axis.
    double longX = 0.0, longY = 0.0;
    double shortX = 0.0, shortY = 0.0;

    // The mean + cos(angle) * long + sin(angle) * short.
    void point(double angle, double& x, double& y) const;
};

// Of the n points for which `isIn` is above 0; false for fewer than three of them, or when they are on one
// line.
bool findEllipse(const double* x, const double* y, const char* isIn, Index n, ChartEllipse& ellipse);
