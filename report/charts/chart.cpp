#include "report/charts/chart.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

ErrorCode SampleGroups::copyFrom(const SampleGroups& other) {
    count = 0;
    const ErrorCode code = names.copy(other.names) | groupOf.allocate(other.groupOf.size());
    if (code != success) return code;
    std::copy(other.groupOf.begin(), other.groupOf.end(), groupOf.begin());
    title = other.title;
    count = other.count;
    return success;
}

void ChartText::set(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
}

void ChartAxis::hold(double value) {
    heldLeast = std::min(heldLeast, value);
    heldMost = std::max(heldMost, value);
}

ChartLayer* Chart::addLayer(LayerKind layerKind, Index points) {
    if (layerCount == mostLayers) return nullptr;
    ChartLayer& layer = layers[layerCount];
    if ((layer.x.allocate(points) | layer.y.allocate(points)) != success) return nullptr;
    ++layerCount;
    layer.kind = layerKind;
    return &layer;
}

int Chart::styleOf(const ChartLayer& layer) const {
    constexpr Index few = 4; // groups, which have the first styles
    return layer.crowdedStyle != 0 && groups.count > few ? layer.crowdedStyle : layer.style;
}

ErrorCode Chart::addGuide(double x0, double y0, double x1, double y1) {
    ChartLayer* const layer = addLayer(LayerKind::line, 2);
    if (layer == nullptr) return outOfMemory;
    layer->style = ChartLayer::guide;
    layer->x[0] = x0;
    layer->y[0] = y0;
    layer->x[1] = x1;
    layer->y[1] = y1;
    return success;
}
