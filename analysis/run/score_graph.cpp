#include "analysis/run/score_graph.h"

#include <algorithm>
#include <cstdio>

namespace {

std::size_t offset(std::size_t row, int stride) {
    return row * static_cast<std::size_t>(stride);
}

void nameSeries(const ScoreGraph& scores, GraphSpec& spec) {
    int number = 0;
    for (TextSlot& name : spec.seriesNames) {
        ++number;
        if (scores.seriesNames != nullptr) {
            std::snprintf(name.text, textSlotSize, "%s", scores.seriesNames[number - 1]);
        } else {
            std::snprintf(name.text, textSlotSize, "%s %d", scores.seriesPrefix, number);
        }
    }
}

void placeItems(const ScoreGraph& scores, const DataMatrix& data, GraphSpec& spec) {
    const std::size_t series = spec.seriesNames.size();
    for (std::size_t i = 0; i < spec.itemLabels.size(); ++i) {
        spec.itemLabels[i] = data.labels[i];
        const std::int32_t number =
            scores.numbers != nullptr ? scores.numbers[i] : static_cast<std::int32_t>(i + 1);
        std::snprintf(spec.numberLabels[i].text, textSlotSize, "%d", number);
        std::copy_n(scores.scores + offset(i, scores.scoreStride), series, spec.values.data() + i * series);
    }
}

void placeVectors(const ScoreGraph& scores, GraphSpec& spec) {
    if (scores.vectorNames == nullptr) return;
    const std::size_t series = spec.seriesNames.size();
    for (std::size_t v = 0; v < spec.vectorNames.size(); ++v) {
        spec.vectorNames[v] = scores.vectorNames[v];
        std::copy_n(scores.vectors + offset(v, scores.vectorStride), series,
                    spec.vectorValues.data() + v * series);
    }
}

} // namespace

void takeGraphPreferences(const Settings& settings, GraphSpec& spec) {
    spec.numbering = static_cast<std::uint32_t>(settings.scatterNumbering);
    spec.vectorOption = static_cast<std::uint32_t>(settings.vectorSizing);
}

ErrorCode buildScoreGraph(Screens& screens, AnalysisRun& run, const ScoreGraph& scores) {
    const Settings& settings = run.options.settings;
    if (settings.expressGraph == 0) return success;
    const DataMatrix& data = run.data.working;
    const int vectors = scores.vectorNames != nullptr ? scores.vectorCount : 1;
    GraphSpec spec;
    const ErrorCode code =
        spec.allocate(static_cast<std::size_t>(std::max(scores.seriesCount, 0)),
                      static_cast<std::size_t>(data.samples), static_cast<std::size_t>(vectors));
    if (code != success) return code;
    if (scores.takesPreferences || run.everyGraphTakesPreferences) takeGraphPreferences(settings, spec);
    nameSeries(scores, spec);
    placeItems(scores, data, spec);
    placeVectors(scores, spec);
    return buildGraph(screens, spec, run.graph);
}
