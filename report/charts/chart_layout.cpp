#include "report/charts/chart_layout.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "report/graph_axes.h"

namespace {

constexpr double air = 0.04;               // of the range, at an end
constexpr double leastRelativeSpan = 1e-7; // of the largest value; below it numbers would have no digits left
constexpr double plainDecades = 3.0;       // from here on only powers of ten have a tick
constexpr double largestValue = 1e300;

double onScale(double value, bool isLogarithmic) {
    return isLogarithmic ? std::log(value) : value;
}

void addTick(double value, const char* text, ChartTicks& ticks) {
    if (ticks.count == ChartTicks::most) return;
    auto& tick = ticks.ticks[ticks.count++];
    tick.value = value;
    std::snprintf(tick.text, sizeof tick.text, "%s", text);
}

void findPlainTicks(const ChartScale& scale, int room, ChartTicks& ticks) {
    Axis axis;
    axis.step = tickStep(scale.most - scale.least);
    axis.bottom = scale.least;
    axis.top = scale.most;
    const double slack = 1e-9 * (scale.most - scale.least);
    const auto first = [&] { return std::ceil((scale.least - slack) / axis.step); };
    const auto last = [&] { return std::floor((scale.most + slack) / axis.step); };
    for (int tries = 0; tries < 40 && last() - first() + 1.0 > room; ++tries) {
        axis.step = tickStep(axis.step * 11.0); // between 1.1 and 2.2 of it: the next round one
    }
    for (double k = first(); k <= last(); k += 1.0) {
        char text[tickTextSize];
        writeTickNumber(axis, static_cast<int>(k), text);
        addTick(k * axis.step, text, ticks);
    }
}

void findLogarithmicTicks(const ChartScale& scale, int room, ChartTicks& ticks) {
    const double first = std::floor(std::log10(scale.least)), last = std::ceil(std::log10(scale.most));
    const bool isPlain = std::log10(scale.most / scale.least) < plainDecades;
    const double step = std::ceil((last - first + 1.0) / std::max(room, 1));
    for (double power = first; power <= last; power += step) {
        for (const double digit : {1.0, 2.0, 5.0}) {
            const double value = digit * std::pow(10.0, power);
            if (value < scale.least || value > scale.most || (!isPlain && digit > 1.0)) continue;
            char text[tickTextSize];
            *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::general, 6).ptr = '\0';
            addTick(value, text, ticks);
        }
    }
}

} // namespace

int ChartScale::place(double value) const {
    if (isLogarithmic && !(value > 0.0)) return from;
    const double begin = onScale(least, isLogarithmic), end = onScale(most, isLogarithmic);
    const double share = (onScale(value, isLogarithmic) - begin) / (end - begin);
    return from + static_cast<int>(std::lround((to - from) * std::clamp(share, 0.0, 1.0)));
}

void ChartRange::hold(double value) {
    if (!(std::fabs(value) <= largestValue)) return;
    least = std::min(least, value);
    most = std::max(most, value);
}

ChartScale makeScale(const ChartAxis& axis, const ChartRange& range) {
    const double least = std::min(axis.heldLeast, range.least), most = std::max(axis.heldMost, range.most);
    ChartScale scale;
    scale.isLogarithmic = axis.isLogarithmic;
    if (!(least <= most)) return scale; // there is nothing to hold
    if (axis.isLogarithmic) {
        const double ratio = std::pow(std::max(most / least, 1.5), air);
        scale.least = least / ratio;
        scale.most = most * ratio;
        return scale;
    }
    double span = most - least;
    const double magnitude = std::max(std::fabs(least), std::fabs(most));
    if (span <= leastRelativeSpan * magnitude) span = magnitude > 0.0 ? magnitude : 1.0;
    const bool isFlat = most - least < span;
    scale.least = least < axis.heldLeast || isFlat ? least - span * air : least;
    scale.most = most > axis.heldMost || isFlat ? most + span * air : most;
    return scale;
}

void findTicks(const ChartScale& scale, int room, ChartTicks& ticks) {
    ticks.count = 0;
    const int most = std::clamp(room, 2, ChartTicks::most);
    (scale.isLogarithmic ? findLogarithmicTicks : findPlainTicks)(scale, most, ticks);
}

void equalize(ChartScale& across, ChartScale& up) {
    ChartScale* const scales[] = {&across, &up};
    double unit[2];
    for (int k = 0; k < 2; ++k) {
        const ChartScale& scale = *scales[k];
        unit[k] = std::max(std::abs(scale.to - scale.from), 1) / (scale.most - scale.least);
    }
    const int longer = unit[0] > unit[1] ? 0 : 1;
    ChartScale& widened = *scales[longer];
    const double more = (widened.most - widened.least) * (unit[longer] / unit[1 - longer] - 1.0) / 2.0;
    widened.least -= more;
    widened.most += more;
}
