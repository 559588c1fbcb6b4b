#include "analysis/basic/event_models/event_charts.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double quantile95 = 1.959963984540054; // of a normal distribution, two-sided
constexpr int empiricalStyle = 3;

// The survival of the group's samples (-1: of all) after each of their event times. Both arrays have room for
// all samples, in whose `order` times ascend. Returns how many there are.
Index estimateSurvival(const EventData& events, const Block<Index>& order, const SampleGroups& groups,
                       Index group, double* times, double* survivals) {
    const auto isIn = [&](Index s) { return group < 0 || groups.groupOf[s] == group; };
    double atRisk = static_cast<double>(std::count_if(order.begin(), order.end(), isIn));
    double survival = 1.0;
    Index count = 0;
    for (Index at = 0; at < order.size();) {
        const double time = events.times[order[at]];
        double deaths = 0.0, leaving = 0.0;
        for (; at < order.size() && events.times[order[at]] == time; ++at) {
            if (!isIn(order[at])) continue;
            leaving += 1.0;
            deaths += events.states[order[at]];
        }
        if (deaths > 0.0) {
            survival *= 1.0 - deaths / atRisk;
            times[count] = time;
            survivals[count++] = survival;
        }
        atRisk -= leaving;
    }
    return count;
}

double latestTime(const EventData& events, const SampleGroups& groups, Index group) {
    double latest = 0.0;
    for (Index s = 0; s < events.samples; ++s) {
        if (group < 0 || groups.groupOf[s] == group) latest = std::max(latest, events.times[s]);
    }
    return latest;
}

// Marks that tell the curves of groups apart without colours.
ErrorCode addMarks(const char* name, const double* times, const double* survivals, Index count, int style,
                   Chart& chart) {
    ChartLayer* const layer = chart.addLayer(LayerKind::points, count);
    if (layer == nullptr) return outOfMemory;
    layer->name.set("%s", name);
    layer->style = style;
    std::copy_n(times, count, layer->x.begin());
    std::copy_n(survivals, count, layer->y.begin());
    return success;
}

} // namespace

void startSurvivalChart(const AnalysisRun& run, const EventData& events, const char* title, Chart& chart) {
    chart.title.set("%s", title);
    chart.across.title.set("%s", run.data.working.name(events.columns.time - 1));
    chart.up.title.set("survival");
    chart.across.hold(0.0);
    chart.up.hold(0.0);
    chart.up.hold(1.0);
}

ErrorCode addSurvivalSteps(const char* name, int style, const double* times, const double* survivals,
                           Index count, double end, Chart& chart) {
    ChartLayer* const layer = chart.addLayer(LayerKind::steps, count + 2);
    if (layer == nullptr) return outOfMemory;
    layer->name.set("%s", name);
    layer->style = style;
    layer->y[0] = 1.0;
    std::copy_n(times, count, layer->x.begin() + 1);
    std::copy_n(survivals, count, layer->y.begin() + 1);
    layer->x[count + 1] = end;
    layer->y[count + 1] = layer->y[count];
    return success;
}

ErrorCode addEmpiricalSurvival(const EventData& events, Chart& chart) {
    Block<Index> order;
    Block<double> times, survivals;
    ErrorCode code =
        order.allocate(events.samples) | times.allocate(events.samples) | survivals.allocate(events.samples);
    if (code != success) return code;
    for (Index s = 0; s < order.size(); ++s) order[s] = s;
    std::sort(order.begin(), order.end(),
              [&](Index a, Index b) { return events.times[a] < events.times[b]; });
    const SampleGroups& groups = chart.groups;
    const bool isOne = groups.count == 0;
    for (Index g = isOne ? -1 : 0; g < groups.count && code == success; ++g) {
        const Index count = estimateSurvival(events, order, groups, g, times.data(), survivals.data());
        ChartText name;
        if (!isOne) name.set("%s %s", groups.title.text, groups.names[g]);
        const int style = isOne ? empiricalStyle : static_cast<int>(g);
        code = addSurvivalSteps(isOne ? "Kaplan-Meier" : "", style, times.data(), survivals.data(), count,
                                latestTime(events, groups, g), chart);
        if (code != success) return code;
        chart.layers[chart.layerCount - 1].isDashed = isOne;
        if (!isOne) code = addMarks(name.text, times.data(), survivals.data(), count, style, chart);
    }
    chart.groups.count = 0; // the names of the curves tell them
    return code;
}

ErrorCode describeRatios(const AnalysisRun& run, const RatioChart& ratios, Chart& chart) {
    const EventData& events = ratios.events;
    const Index count = events.covariates;
    chart.title.set("%s: %ss with intervals of 95 %%", ratios.title, ratios.ratioName);
    chart.across.title.set("%s", ratios.ratioName);
    chart.across.isLogarithmic = true;
    chart.up.hold(0.5);
    chart.up.hold(static_cast<double>(count) + 0.5);
    ErrorCode code =
        chart.up.categories.allocate(count) | chart.addGuide(1.0, 0.5, 1.0, static_cast<double>(count) + 0.5);
    ChartLayer* const layer = chart.addLayer(LayerKind::intervals, count);
    if (code != success || layer == nullptr) return outOfMemory;
    code = layer->lower.allocate(count) | layer->upper.allocate(count);
    if (code != success) return code;
    for (Index j = 0; j < count; ++j) {
        const double value = ratios.coefficients.values[j];
        const double half = quantile95 * ratios.coefficients.errors[j];
        chart.up.categories.set(j, run.data.working.name(events.covariateColumns[j]));
        layer->x[j] = std::exp(value);
        layer->y[j] = static_cast<double>(j + 1);
        layer->lower[j] = std::exp(value - half);
        layer->upper[j] = std::exp(value + half);
    }
    return success;
}
