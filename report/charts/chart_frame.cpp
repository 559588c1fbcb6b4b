#include "report/charts/chart_frame.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "report/charts/group_style.h"
#include "report/graph_axes.h"

namespace {

constexpr int tickLength = 4;

int lineHeight(const ChartFrame& frame) {
    return frame.text.height * 5 / 4;
}

bool hasGroups(const Chart& chart) {
    return chart.groups.count > 0;
}

bool isNamed(const Chart& chart, const ChartLayer& layer) {
    return !layer.name.isEmpty() && !(layer.isOfSamples && hasGroups(chart));
}

int countEntries(const Chart& chart) {
    Index count = hasGroups(chart) ? chart.groups.count + 1 : 0;
    for (Index k = 0; k < chart.layerCount; ++k) count += isNamed(chart, chart.layers[k]);
    return static_cast<int>(count);
}

// The key of a legend's line is as wide as two letters are high.
int keyWidth(const ChartFrame& frame) {
    return frame.text.height * 3 / 2;
}

int legendWidth(Canvas& canvas, const Chart& chart, const ChartFrame& frame) {
    if (countEntries(chart) == 0) return 0;
    int widest = 0;
    const auto take = [&](const char* text, int key) {
        widest = std::max(widest, key + canvas.measure(text, frame.text).width);
    };
    if (hasGroups(chart)) {
        take(chart.groups.title.text, 0);
        for (Index g = 0; g < chart.groups.count; ++g) take(chart.groups.names[g], keyWidth(frame));
    }
    for (Index k = 0; k < chart.layerCount; ++k) {
        if (isNamed(chart, chart.layers[k])) take(chart.layers[k].name.text, keyWidth(frame));
    }
    return std::min(widest + 1, frame.size.width * 3 / 10);
}

int widestTick(Canvas& canvas, const ChartTicks& ticks, const TextStyle& style) {
    int widest = 0;
    for (int k = 0; k < ticks.count; ++k)
        widest = std::max(widest, canvas.measure(ticks.ticks[k].text, style).width);
    return widest;
}

int widestCategory(Canvas& canvas, const ChartAxis& axis, const ChartFrame& frame) {
    int widest = 0;
    for (Index k = 0; k < axis.categories.size(); ++k)
        widest = std::max(widest, canvas.measure(axis.categories[k], frame.text).width);
    return std::min(widest, frame.size.width / 4);
}

// As many numbers as have air between them.
void findAcrossTicks(Canvas& canvas, ChartFrame& frame) {
    const int width = std::max(frame.plot.right - frame.plot.left, 1);
    int room = width / (2 * frame.text.height);
    for (int tries = 0; tries < 4; ++tries) {
        findTicks(frame.across, room, frame.acrossTicks);
        const int widest = widestTick(canvas, frame.acrossTicks, frame.text) + frame.text.height;
        if (widest * frame.acrossTicks.count <= width) return;
        room = std::max(width / widest, 2);
    }
}

void drawKey(Canvas& canvas, const Chart& chart, const ChartLayer& layer, const ChartFrame& frame,
             Point middle) {
    const int half = keyWidth(frame) / 2 - 3;
    const Point left = {middle.x - half, middle.y}, right = {middle.x + half, middle.y};
    switch (layer.kind) {
    case LayerKind::points:
        return drawMark(canvas, groupStyle(chart.styleOf(layer)), middle, frame.markRadius(1));
    case LayerKind::band:
        return canvas.fillBox({left.x, middle.y - half / 2, right.x, middle.y + half / 2}, chartShade);
    default:
        return drawSegment(canvas, left, right, layerPen(layer, frame));
    }
}

} // namespace

int ChartFrame::markRadius(Index marks) const {
    const int radius = std::max(text.height / 4, 2);
    return marks > 3000 ? std::max(radius - 2, 2) : marks > 300 ? std::max(radius - 1, 2) : radius;
}

int ChartFrame::lineWidth() const {
    return std::max(text.height / 8, 1);
}

FittedText fitTo(Canvas& canvas, const char* text, const TextStyle& style, int width) {
    FittedText fitted;
    fitText(canvas, text, style, width, fitted.text);
    fitted.width = canvas.measure(fitted.text, style).width;
    return fitted.width <= width ? fitted : FittedText{};
}

Pen layerPen(const ChartLayer& layer, const ChartFrame& frame) {
    if (layer.style == ChartLayer::guide) return {.color = chartGrey, .width = 1, .dashed = true};
    return {.color = groupStyle(layer.style).color, .width = frame.lineWidth(), .dashed = layer.isDashed};
}

ChartFrame layOutFrame(Canvas& canvas, const Chart& chart, const ChartView& view, const ChartRange& across,
                       const ChartRange& up, int left) {
    ChartFrame frame = {};
    frame.size = view.size;
    frame.text = {.height = view.fontHeight, .color = chartInk};
    frame.title = {.height = view.fontHeight * 5 / 4, .color = chartInk};
    const int margin = view.fontHeight / 2, line = lineHeight(frame);
    const int legend = legendWidth(canvas, chart, frame);
    frame.across = makeScale(chart.across, across);
    frame.up = makeScale(chart.up, up);

    frame.plot.top = margin + (!chart.title.isEmpty() ? frame.title.height + margin : 0);
    const int below = tickLength + 2 + view.fontHeight + (!chart.across.title.isEmpty() ? line : 0);
    frame.plot.bottom = view.size.height - margin - below;
    frame.legendLeft = view.size.width - margin - legend;
    frame.plot.right = frame.legendLeft - margin - (legend > 0 ? margin : 0);
    const int height = std::max(frame.plot.bottom - frame.plot.top, 1);
    const int upTitle = !chart.up.title.isEmpty() ? line : 0;
    const auto setLeft = [&](int numbers) { frame.plot.left = margin + left + upTitle + numbers; };
    const auto setScales = [&] {
        frame.across.from = frame.plot.left;
        frame.across.to = frame.plot.right - 1;
        const bool isDownward = chart.up.categories.size() > 0;
        frame.up.from = isDownward ? frame.plot.top : frame.plot.bottom - 1;
        frame.up.to = isDownward ? frame.plot.bottom - 1 : frame.plot.top;
    };
    const auto findUpTicks = [&] {
        findTicks(frame.up, height / (2 * view.fontHeight), frame.upTicks);
        return widestTick(canvas, frame.upTicks, frame.text) + tickLength + 4;
    };
    // Scales that are made equal change the numbers, whose width the scales depend on: a wide place for these
    // is enough for both, but for numbers with long powers of ten.
    const int widePlace = 3 * view.fontHeight;
    setLeft(widePlace);
    setScales();
    if (chart.isEqualScale) equalize(frame.across, frame.up);
    if (chart.up.categories.size() > 0) {
        setLeft(widestCategory(canvas, chart.up, frame) + margin);
    } else if (chart.kind == ChartKind::tree) {
        setLeft(0);
    } else {
        const int numbers = findUpTicks();
        if (!chart.isEqualScale) setLeft(numbers);
        if (chart.isEqualScale && numbers > widePlace) {
            setLeft(numbers + view.fontHeight);
            setScales();
            equalize(frame.across, frame.up);
            findUpTicks();
        }
    }
    setScales();
    findAcrossTicks(canvas, frame);
    return frame;
}

void drawTitle(Canvas& canvas, const Chart& chart, const ChartFrame& frame) {
    if (chart.title.isEmpty()) return;
    const int margin = frame.text.height / 2;
    const FittedText title = fitTo(canvas, chart.title.text, frame.title, frame.size.width - 2 * margin);
    // Over the plot, but inside the picture.
    const int middle = (frame.plot.left + frame.plot.right) / 2;
    const int most = std::max(frame.size.width - margin - title.width, margin);
    canvas.drawText({std::clamp(middle - title.width / 2, margin, most), margin}, title.text, frame.title);
}

void drawAcrossAxis(Canvas& canvas, const ChartAxis& axis, const ChartFrame& frame) {
    const Box& plot = frame.plot;
    const int margin = frame.text.height / 2;
    for (int k = 0; k < frame.acrossTicks.count; ++k) {
        const auto& tick = frame.acrossTicks.ticks[k];
        const int x = frame.across.place(tick.value), width = canvas.measure(tick.text, frame.text).width;
        drawSegment(canvas, {x, plot.top}, {x, plot.bottom - 1}, {.color = chartGridGrey});
        drawSegment(canvas, {x, plot.bottom}, {x, plot.bottom + tickLength}, {.color = chartInk});
        const int most = frame.size.width - margin / 2 - width; // below 0 there is no room for it
        if (most < 0) continue;
        canvas.drawText({std::clamp(x - width / 2, 0, most), plot.bottom + tickLength + 2}, tick.text,
                        frame.text);
    }
    drawSegment(canvas, {plot.left, plot.bottom}, {plot.right, plot.bottom}, {.color = chartInk});
    const FittedText title = fitTo(canvas, axis.title.text, frame.text, plot.right - plot.left);
    const int top = frame.size.height - margin - frame.text.height;
    canvas.drawText({(plot.left + plot.right - title.width) / 2, top}, title.text, frame.text);
}

void drawUpAxis(Canvas& canvas, const ChartAxis& axis, const ChartFrame& frame) {
    const Box& plot = frame.plot;
    const int half = frame.text.height / 2;
    for (Index k = 0; k < axis.categories.size(); ++k) {
        const int y = frame.up.place(static_cast<double>(k + 1));
        const FittedText name = fitTo(canvas, axis.categories[k], frame.text, frame.size.width / 4);
        canvas.drawText({plot.left - half - name.width, y - half}, name.text, frame.text);
    }
    for (int k = 0; k < frame.upTicks.count; ++k) {
        const auto& tick = frame.upTicks.ticks[k];
        const int y = frame.up.place(tick.value), width = canvas.measure(tick.text, frame.text).width;
        drawSegment(canvas, {plot.left, y}, {plot.right, y}, {.color = chartGridGrey});
        drawSegment(canvas, {plot.left - tickLength, y}, {plot.left, y}, {.color = chartInk});
        canvas.drawText({plot.left - tickLength - 3 - width, y - half}, tick.text, frame.text);
    }
    drawSegment(canvas, {plot.left, plot.top}, {plot.left, plot.bottom}, {.color = chartInk});
    if (axis.title.isEmpty()) return;
    const FittedText title = fitTo(canvas, axis.title.text, frame.text, plot.bottom - plot.top);
    canvas.drawUpright({half, (plot.top + plot.bottom - title.width) / 2}, title.text, frame.text);
}

void drawLegend(Canvas& canvas, const Chart& chart, const ChartFrame& frame) {
    const int line = lineHeight(frame), key = keyWidth(frame), half = frame.text.height / 2;
    const int room = frame.size.width - half - frame.legendLeft;
    Point at = {frame.legendLeft, frame.plot.top};
    const auto write = [&](const char* text, int indent) {
        const FittedText fitted = fitTo(canvas, text, frame.text, room - indent);
        canvas.drawText({at.x + indent, at.y}, fitted.text, frame.text);
        at.y += line;
    };
    // What has no room goes without a key.
    const auto isFull = [&] { return at.y + frame.text.height > frame.size.height; };
    if (hasGroups(chart)) {
        write(chart.groups.title.text, 0);
        for (Index g = 0; g < chart.groups.count && !isFull(); ++g) {
            drawMark(canvas, groupStyle(static_cast<int>(g)), {at.x + key / 2, at.y + half},
                     frame.markRadius(1));
            write(chart.groups.names[g], key);
        }
    }
    for (Index k = 0; k < chart.layerCount; ++k) {
        const ChartLayer& layer = chart.layers[k];
        if (!isNamed(chart, layer) || isFull()) continue;
        drawKey(canvas, chart, layer, frame, {at.x + key / 2, at.y + half});
        write(layer.name.text, key);
    }
}
