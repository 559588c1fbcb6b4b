#include "report/table_formats.h"

#include <algorithm>
#include <cmath>

#include "data/moments/working_moments.h"

TableFormats formatsForMagnitude(double largest, int variableLength, int labelLength) {
    TableFormats formats = {};
    formats.nameLength = std::max(variableLength, 0);
    formats.labelWidth = std::max(labelLength, 0);
    int digits = 1;
    for (double m = std::isfinite(largest) ? largest : 0.0; m >= 10.0; m /= 10.0) ++digits;
    formats.width = std::max(formats.nameLength, digits + 1);
    const int mostDecimals = std::max(0, formats.nameLength - 2 - digits);
    for (int slot = 0; slot < TableFormats::slotCount; ++slot) {
        formats.decimals[slot] = std::min(slot, mostDecimals);
    }
    return formats;
}

double largestMagnitude(const double* values, Index count) {
    double largest = 0.0;
    for (Index i = 0; i < count; ++i) {
        const double magnitude = std::fabs(values[i]);
        if (magnitude > largest && std::isfinite(magnitude)) largest = magnitude;
    }
    return largest;
}

void SetFormatsFromData(Report& report, const DataSet& data, int variableLength, int labelLength) {
    const DataMatrix& working = data.working;
    const double largest = working.moments != nullptr
                               ? greatestOfMoments(working)
                               : largestMagnitude(working.values.data(), working.count());
    report.formats = formatsForMagnitude(largest, variableLength, labelLength);
}

void SetFormatsFromValues(Report& report, const double* values, Index count, int variableLength,
                          int labelLength) {
    report.formats = formatsForMagnitude(largestMagnitude(values, count), variableLength, labelLength);
}

void SetFormatsFromValues(Report& report, const double* values, Index count) {
    SetFormatsFromValues(report, values, count, report.formats.nameLength, report.formats.labelWidth);
}

void SetFormatsFromValues(Report& report, const Block<double>& values) {
    SetFormatsFromValues(report, values.data(), values.size());
}

void SetFormatsFromValues(Report& report, const Matrix& values) {
    SetFormatsFromValues(report, values.data(), values.size());
}
