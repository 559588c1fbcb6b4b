#include "analysis/run/score_charts.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double arrowShare = 0.85; // of the way to the farthest score

void nameAxis(const ScoreCharts& scores, Index k, ChartText& title) {
    if (scores.shares != nullptr && std::isfinite(scores.shares[k])) {
        title.set("%s %td (%.1f %%)", scores.axisName, k + 1, 100.0 * scores.shares[k]);
    } else {
        title.set("%s %td", scores.axisName, k + 1);
    }
}

double largestIn(const Matrix& matrix, Index column) {
    double largest = 0.0;
    for (Index i = 0; i < matrix.rows(); ++i) {
        if (std::isfinite(matrix(i, column))) largest = std::max(largest, std::fabs(matrix(i, column)));
    }
    return largest;
}

// A layer of the rows of a matrix on two of its columns; one axis alone is drawn over the rows' numbers.
ChartLayer* addRows(Chart& chart, LayerKind kind, const Matrix& matrix, const Index (&axes)[2],
                    bool isSingle) {
    ChartLayer* const layer = chart.addLayer(kind, matrix.rows());
    if (layer == nullptr) return nullptr;
    for (Index i = 0; i < matrix.rows(); ++i) {
        layer->x[i] = isSingle ? static_cast<double>(i + 1) : matrix(i, axes[0]);
        layer->y[i] = isSingle ? matrix(i, axes[0]) : matrix(i, axes[1]);
    }
    return layer;
}

ErrorCode addArrows(const ScoreCharts& scores, const Index (&axes)[2], Chart& chart) {
    ChartLayer* const layer = addRows(chart, LayerKind::arrows, *scores.arrows, axes, false);
    if (layer == nullptr || layer->labels.allocate(layer->size()) != success) return outOfMemory;
    double factor = INFINITY;
    for (const Index axis : axes) {
        const double ofArrows = largestIn(*scores.arrows, axis);
        if (ofArrows > 0.0)
            factor = std::min(factor, arrowShare * largestIn(*scores.scores, axis) / ofArrows);
    }
    if (!std::isfinite(factor)) factor = 1.0;
    for (Index i = 0; i < layer->size(); ++i) {
        layer->x[i] *= factor;
        layer->y[i] *= factor;
        layer->labels.set(i, scores.arrowNames[i]);
    }
    return success;
}

ErrorCode addOthers(const ScoreCharts& scores, const Index (&axes)[2], Chart& chart) {
    ChartLayer* const layer = addRows(chart, LayerKind::points, *scores.others, axes, false);
    if (layer == nullptr || layer->labels.copy(scores.otherNames) != success) return outOfMemory;
    layer->style = 4; // apart from those of the groups
    layer->crowdedStyle = 8;
    layer->name.set("%s", scores.othersName);
    return success;
}

ErrorCode addMeans(const ScoreCharts& scores, const char* variable, const Index (&axes)[2], Chart& chart) {
    ChartLayer* const layer = addRows(chart, LayerKind::points, *scores.means, axes, false);
    if (layer == nullptr || layer->labels.allocate(layer->size()) != success) return outOfMemory;
    for (Index g = 0; g < layer->size(); ++g) layer->labels.setFormat(g, "%s %td", variable, g + 1);
    layer->style = 7;
    layer->crowdedStyle = 9;
    layer->name.set("means of groups");
    return success;
}

// Those of the analysis itself, unless the user has chosen some.
ErrorCode takeOwnGroups(const DataMatrix& data, Index column, SampleGroups& groups) {
    if (column < 0 || groups.count > 0) return success;
    double most = 0.0;
    for (Index s = 0; s < data.samples; ++s) most = std::max(most, data.at(s, column));
    if (most > static_cast<double>(SampleGroups::most)) return success;
    const Index count = static_cast<Index>(most);
    if ((groups.names.allocate(count) | groups.groupOf.allocate(data.samples)) != success) return outOfMemory;
    for (Index g = 0; g < count; ++g) groups.names.setFormat(g, "%td", g + 1);
    for (Index s = 0; s < data.samples; ++s)
        groups.groupOf[s] = static_cast<std::int32_t>(data.at(s, column)) - 1;
    groups.title.set("%s", data.name(column));
    groups.count = count;
    return success;
}

} // namespace

ErrorCode describeMap(const AnalysisRun& run, const ScoreCharts& scores, Chart& chart) {
    const DataMatrix& data = run.data.working;
    const Index(&axes)[2] = run.pictureWish.axes;
    if (scores.count < 1) {
        chart.refusal = "there is no axis to draw";
        return success;
    }
    const bool isSingle = scores.count == 1 && axes[0] == 0;
    if (!isSingle && std::max(axes[0], axes[1]) >= scores.count) {
        chart.refusal = "--axes: the picture has fewer axes";
        return success;
    }
    chart.title.set("%s", scores.title);
    nameAxis(scores, axes[0], isSingle ? chart.up.title : chart.across.title);
    if (isSingle) {
        chart.across.title.set("number of the sample");
    } else {
        nameAxis(scores, axes[1], chart.up.title);
    }
    chart.isEqualScale = scores.isEqualScale && !isSingle;
    ErrorCode code = takeOwnGroups(data, scores.groupColumn, chart.groups);
    if (code == success && isSingle) code = chart.addGuide(1.0, 0.0, data.samples, 0.0);
    if (code != success) return code;
    ChartLayer* const samples = addRows(chart, LayerKind::points, *scores.scores, axes, isSingle);
    if (samples == nullptr) return outOfMemory;
    samples->isOfSamples = true;
    samples->name.set("%s", scores.samplesName);
    code = samples->labels.copy(data.labels);
    if (code == success && scores.arrows != nullptr && !isSingle) code = addArrows(scores, axes, chart);
    if (code == success && scores.others != nullptr && !isSingle) code = addOthers(scores, axes, chart);
    if (code == success && scores.means != nullptr && !isSingle)
        code = addMeans(scores, data.name(scores.groupColumn), axes, chart);
    return code;
}

ErrorCode describeScree(const AnalysisRun&, const ScoreCharts& scores, Chart& chart) {
    if (scores.weights == nullptr || scores.weightCount < 1) {
        chart.refusal = "this run has no weights of axes to draw";
        return success;
    }
    chart.title.set("%s: scree", scores.title);
    chart.across.title.set("number of the axis");
    chart.up.title.set("%s", scores.weightName);
    const double count = static_cast<double>(scores.weightCount);
    chart.across.hold(0.4);
    chart.across.hold(count + 0.6);
    chart.up.hold(0.0);
    for (const LayerKind kind : {LayerKind::line, LayerKind::points}) {
        ChartLayer* const layer = chart.addLayer(kind, scores.weightCount);
        if (layer == nullptr) return outOfMemory;
        for (Index k = 0; k < scores.weightCount; ++k) {
            layer->x[k] = static_cast<double>(k + 1);
            layer->y[k] = scores.weights[k];
        }
    }
    return scores.weightLevel > 0.0 ? chart.addGuide(0.4, scores.weightLevel, count + 0.6, scores.weightLevel)
                                    : success;
}
