#include "analysis/run/fit_charts.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr Index curvePoints = 64;
constexpr double residualLevel = 2.0; // that few residuals of a good fit are beyond

// Smallest and greatest of the finite ones.
struct ValueRange {
    double least = INFINITY;
    double most = -INFINITY;
    void take(double value) {
        if (!std::isfinite(value)) return;
        least = std::min(least, value);
        most = std::max(most, value);
    }
    bool isEmpty() const { return !(least <= most); }
};

ChartLayer* addSamples(const AnalysisRun& run, const double* x, Index xStride, const double* y, Index yStride,
                       Chart& chart) {
    const DataMatrix& data = run.data.working;
    ChartLayer* const layer = chart.addLayer(LayerKind::points, data.samples);
    if (layer == nullptr || layer->labels.copy(data.labels) != success) return nullptr;
    layer->isOfSamples = true;
    for (Index s = 0; s < data.samples; ++s) {
        layer->x[s] = x[s * xStride];
        layer->y[s] = y[s * yStride];
    }
    return layer;
}

ValueRange rangeOf(const double* values, Index stride, Index count) {
    ValueRange range;
    for (Index i = 0; i < count; ++i) range.take(values[i * stride]);
    return range;
}

ErrorCode describeSingle(const AnalysisRun& run, const FitCharts& fit, Chart& chart) {
    const Index samples = run.data.working.samples;
    const ValueRange range = rangeOf(fit.explanatory, fit.explanatoryStride, samples);
    chart.across.title.set("%s", fit.explanatoryName);
    chart.up.title.set("%s", fit.purpose);
    if (range.isEmpty()) {
        chart.refusal = "there is nothing to draw";
        return success;
    }
    ChartLayer* const band = fit.alpha != 0.0 ? chart.addLayer(LayerKind::band, curvePoints) : nullptr;
    ChartLayer* const curve = chart.addLayer(LayerKind::line, curvePoints);
    if (curve == nullptr || (fit.alpha != 0.0 && band == nullptr)) return outOfMemory;
    for (Index k = 0; k < curvePoints; ++k) {
        const double share = static_cast<double>(k) / (curvePoints - 1);
        curve->x[k] = range.least + (range.most - range.least) * share;
    }
    curve->name.set("prediction");
    curve->style = 3;
    if (band != nullptr) {
        if ((band->lower.allocate(curvePoints) | band->upper.allocate(curvePoints)) != success)
            return outOfMemory;
        std::copy(curve->x.begin(), curve->x.end(), band->x.begin());
        band->y.release();
        band->name.set("%g %% interval", 100.0 * (1.0 - fit.alpha));
    }
    fit.describeCurve(run, *curve, band);
    const bool isAdded = addSamples(run, fit.explanatory, fit.explanatoryStride, fit.measured,
                                    fit.measuredStride, chart) != nullptr;
    return isAdded ? success : outOfMemory;
}

} // namespace

ErrorCode describeFit(const AnalysisRun& run, const FitCharts& fit, Chart& chart) {
    chart.title.set("%s", fit.title);
    if (fit.explanatory != nullptr) return describeSingle(run, fit, chart);
    const Index samples = run.data.working.samples;
    chart.across.title.set("predicted %s", fit.purpose);
    chart.up.title.set("measured %s", fit.purpose);
    const ValueRange predicted = rangeOf(fit.predicted, fit.predictedStride, samples);
    const ValueRange measured = rangeOf(fit.measured, fit.measuredStride, samples);
    const double from = std::max(predicted.least, measured.least);
    const double to = std::min(predicted.most, measured.most);
    const ErrorCode code = from < to ? chart.addGuide(from, from, to, to) : success;
    if (code != success) return code;
    const bool isAdded = addSamples(run, fit.predicted, fit.predictedStride, fit.measured, fit.measuredStride,
                                    chart) != nullptr;
    return isAdded ? success : outOfMemory;
}

ErrorCode describeResiduals(const AnalysisRun& run, const FitCharts& fit, Chart& chart) {
    const Index samples = run.data.working.samples;
    chart.title.set("%s: residuals", fit.title);
    chart.across.title.set("predicted %s", fit.purpose);
    chart.up.title.set("standardized residual");
    const ValueRange predicted = rangeOf(fit.predicted, fit.predictedStride, samples);
    ErrorCode code = success;
    for (const double level : {0.0, residualLevel, -residualLevel}) {
        if (!predicted.isEmpty()) code |= chart.addGuide(predicted.least, level, predicted.most, level);
    }
    if (code != success) return code;
    const bool isAdded = addSamples(run, fit.predicted, fit.predictedStride, fit.residuals,
                                    fit.residualStride, chart) != nullptr;
    return isAdded ? success : outOfMemory;
}
